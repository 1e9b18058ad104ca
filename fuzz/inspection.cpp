#include <algorithm>
#include <span>
#include <string>
#include <variant>

#include "corvinex/inspect.h"
#include "fuzz/json_text.h"
#include "fuzz/target.h"
#include "fuzz/value_walk.h"
#include "inspect/record/json_writer.h"
#include "inspect/record/record.h"

// The inspection of the whole input: every value and text is asked for, and both forms of the
// record are written and parsed.

namespace {

using corvinex::inspect::Directory;
using corvinex::inspect::Entry;
using corvinex::inspect::File;
using corvinex::inspect::JsonWriter;

class StringSink final : public corvinex::inspect::TextSink {
  public:
    void write(std::string_view part) override { text += part; }
    std::string text;
};

void checkEntry(const File& file, const Entry& entry) {
    const auto value = entry.value();
    fuzz::require(!value || entry.count() != 0, "a value without elements");
    if (value) {
        const std::size_t size =
            std::visit([](auto elements) { return elements.size(); }, value->elements());
        fuzz::require(size == value->size(), "another number of elements");
        fuzz::require(value->bytes().size() <= file.size(), "a value larger than the file");
        static_cast<void>(entry.text(*value));
        static_cast<void>(entry.words(*value));
    }
    for (const std::uint32_t target : entry.targets()) {
        fuzz::require(target >= Entry::noDirectory - 1 || target < file.directories().size(),
                      "a pointer past the directories");
    }
}

/// Values may overlap: a small input asks for little of them.
void checkValues(const File& file) {
    constexpr std::uint64_t mostBytes = std::uint64_t{1} << 22U;
    std::uint64_t bytes = 0;
    for (const Entry& entry : file.entries()) {
        if (entry.isInFile() && bytes < mostBytes) {
            bytes += entry.byteCount();
            checkEntry(file, entry);
        }
    }
}

void checkText(const std::string& text) {
    fuzz::require(!text.empty() && text.back() == '\n', "no end of line");
    fuzz::require(std::ranges::none_of(text.begin(), text.end() - 1,
                                       [](char c) { return c >= 0 && c < ' '; }),
                  "a control character");
    fuzz::require(fuzz::isJson(text), "no JSON");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const File file = File::fromBytes(std::as_bytes(std::span(data, size)));
    const std::uint64_t allowed = 65'536 + size / 4;
    fuzz::require(file.directories().size() + file.entries().size() <= allowed,
                  "more directories and entries than allowed");
    checkValues(file);
    for (const Directory& directory : file.directories()) {
        static_cast<void>(directory.derived());
    }
    const corvinex::inspect::FileFacts facts{"input", size, std::nullopt};
    StringSink sink;
    JsonWriter json(sink, JsonWriter::Style::OneLine);
    writeRecord(json, facts, &file, {});
    json.flush();
    checkText(sink.text);
    sink.text.clear();
    writeFlatRecord(json, facts, &file, {});
    json.flush();
    checkText(sink.text);
    return 0;
}
