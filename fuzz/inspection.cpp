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

using corvinex::inspect::Entry;
using corvinex::inspect::File;
using corvinex::inspect::JsonWriter;

class StringSink final : public corvinex::inspect::TextSink {
  public:
    void write(std::string_view part) override { text += part; }
    std::string text;
};

/// The elements of all values, as far as their bytes come to no more than a small input may ask
/// for: values may overlap. What the values say is asked by the records.
void checkValues(const File& file) {
    constexpr std::uint64_t mostBytes = std::uint64_t{1} << 20U;
    std::uint64_t bytes = 0;
    for (const Entry& entry : file.entries()) {
        for (const std::uint32_t target : entry.targets()) {
            fuzz::require(target >= Entry::noDirectory - 1 || target < file.directories().size(),
                          "a pointer past the directories");
        }
        if (!entry.isInFile() || bytes >= mostBytes) {
            continue;
        }
        bytes += entry.byteCount();
        if (const auto value = entry.value()) {
            const std::size_t size =
                std::visit([](auto elements) { return elements.size(); }, value->elements());
            fuzz::require(size != 0 && size == value->size(), "another number of elements");
            fuzz::require(value->bytes().size() <= file.size(), "a value larger than the file");
        }
    }
}

void checkText(const std::string& text) {
    fuzz::require(text.find('\n') + 1 == text.size(), "not one line");
    fuzz::require(fuzz::isJson(text), "no JSON");
}

/// Both forms of the record.
void checkRecords(const File& file) {
    const corvinex::inspect::FileFacts facts{"input", file.size(), std::nullopt};
    StringSink sink;
    JsonWriter json(sink, JsonWriter::Style::OneLine);
    writeRecord(json, facts, &file, {});
    json.flush();
    checkText(sink.text);
    sink.text.clear();
    writeFlatRecord(json, facts, &file, {});
    json.flush();
    checkText(sink.text);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The record of many entries says nothing of a reading that those of few do not say, and takes
    // as long as thousands of executions: directories may overlap, and values too.
    constexpr std::size_t mostEntries = 128;
    const File file = File::fromBytes(std::as_bytes(std::span(data, size)));
    const std::uint64_t allowed = 65'536 + size / 4;
    fuzz::require(file.directories().size() + file.entries().size() <= allowed,
                  "more directories and entries than allowed");
    checkValues(file);
    static_cast<void>(file.findings());
    if (file.entries().size() <= mostEntries) {
        checkRecords(file);
    }
    return 0;
}
