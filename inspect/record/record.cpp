#include "inspect/record/record.h"

#include <optional>
#include <string_view>

#include "inspect/record/derived_json.h"
#include "inspect/record/entry_content.h"
#include "inspect/record/finding_json.h"
#include "inspect/record/record_head.h"
#include "inspect/record/value_json.h"
#include "inspect/value_budget.h"

namespace corvinex::inspect {

namespace {

using Facts = std::vector<DerivedFact>;
constexpr std::uint64_t schemaVersion = 1;

class RecordWriter {
  public:
    RecordWriter(JsonWriter& json, const File* file, const RecordOptions& options)
        : json_(json),
          file_(file),
          options_(options),
          budget_(file == nullptr ? 0 : file->size()) {}

    void write(const FileFacts& facts) {
        json_.beginObject().key("schema").integer(schemaVersion);
        writeName(json_, facts);
        json_.key("size");
        writeOptional(facts.size, [&](std::uint64_t size) { json_.integer(size); });
        json_.key("modified");
        writeOptional(facts.modified, [&](std::time_t time) { json_.word(isoTime(time)); });
        json_.key("status").word(statusName(statusOf(file_)));
        writeHead();
        json_.key("directories").beginArray();
        for (const Directory& directory : directories()) {
            writeDirectory(directory);
        }
        json_.endArray();
        json_.key("derived");
        writeFacts([&] { return file_ == nullptr ? Facts() : file_->derived(); });
        writeFindings();
        json_.endObject();
    }

  private:
    template <class Type, class Write>
    void writeOptional(const std::optional<Type>& value, Write write) {
        if (value) {
            write(*value);
        } else {
            json_.null();
        }
    }

    [[nodiscard]] std::span<const Directory> directories() const {
        return file_ == nullptr ? std::span<const Directory>() : file_->directories();
    }

    template <class Read>
    void writeFacts(Read read) {
        writeDerived(json_,
                     readIfPossible([&] { return std::optional(read()); }).value_or(Facts()));
    }

    void writeHead() {
        const auto container = file_ == nullptr ? std::nullopt : file_->container();
        const auto order = file_ == nullptr ? std::nullopt : file_->byteOrder();
        const auto header = file_ == nullptr ? std::nullopt : file_->headerOffset();
        json_.key("container");
        writeOptional(container, [&](Container value) { json_.word(containerName(value)); });
        json_.key("byte_order");
        writeOptional(order, [&](ByteOrder value) { json_.word(byteOrderName(value)); });
        json_.key("header_offset");
        writeOptional(header, [&](std::uint64_t value) { json_.integer(value); });
    }

    void writeDirectory(const Directory& directory) {
        const std::string path = directory.path();
        json_.beginObject().key("path").word(path);
        json_.key("kind").word(kindName(directory.kind()));
        json_.key("offset").integer(directory.offset());
        json_.key("entries").beginArray();
        for (const Entry& entry : directory.entries()) {
            if (options_.tags.contains(entry, path)) {
                writeEntry(entry);
            }
        }
        json_.endArray();
        json_.key("derived");
        writeFacts([&] { return directory.derived(); });
        json_.endObject();
    }

    void writeEntry(const Entry& entry) {
        const std::string_view name = entry.name();
        const std::string_view field = entry.fieldName();
        json_.beginRow().key("number").integer(std::uint64_t{entry.number()});
        json_.key("name");
        writeOptional(name.empty() ? std::nullopt : std::optional(name),
                      [&](std::string_view text) { json_.word(text); });
        if (!field.empty() && field != name) {
            json_.key("field").word(field);
        }
        json_.key("type");
        if (entry.type()) {
            json_.word(entry.typeName());
        } else {
            json_.integer(std::uint64_t{entry.typeCode()});
        }
        json_.key("count").integer(entry.count()).key("offset");
        writeOptional(entry.offset(), [&](std::uint64_t offset) { json_.integer(offset); });
        bool isTruncated = writeEntryValue(entry);
        if (entry.isPointer()) {
            isTruncated = writeTargets(entry) || isTruncated;
        }
        if (isTruncated) {
            json_.key("truncated").boolean(true);
        }
        json_.endObject();
    }

    /// Returns whether the value is not given whole.
    bool writeEntryValue(const Entry& entry) {
        const EntryContent content = readContent(entry, budget_);
        json_.key("value");
        if (!content.value) {
            json_.null();
            return content.isBeyondBudget;
        }
        const bool isTruncated =
            writeValue(json_, *content.value, content.interpretation, options_.maxValues);
        if (!content.interpretation.charset.empty()) {
            json_.key("charset").word(content.interpretation.charset);
        }
        if (!content.interpretation.rest.empty()) {
            json_.key("rest").bytes(content.interpretation.rest);
        }
        if (content.text) {
            json_.key("text").string(*content.text);
        }
        return isTruncated;
    }

    /// Writes what a pointer's values lead to. Returns whether it did not fit into the budget.
    bool writeTargets(const Entry& entry) {
        const auto paths = targetPaths(*file_, entry, budget_);
        json_.key("directories");
        if (!paths) {
            json_.null();
            return true;
        }
        json_.beginArray();
        for (const std::string& path : *paths) {
            writeOptional(path.empty() ? std::nullopt : std::optional(path),
                          [&](const std::string& text) { json_.word(text); });
        }
        json_.endArray();
        return false;
    }

    void writeFindings() {
        json_.key("findings").beginArray();
        for (const Finding& finding : findingsOf(file_)) {
            writeFinding(json_, finding);
        }
        json_.endArray();
    }

    JsonWriter& json_;
    const File* file_;
    const RecordOptions& options_;
    ValueBudget budget_;
};

}  // namespace

void writeRecord(JsonWriter& json, const FileFacts& facts, const File* file,
                 const RecordOptions& options) {
    RecordWriter(json, file, options).write(facts);
}

}  // namespace corvinex::inspect
