#include <set>
#include <string>
#include <string_view>

#include "corvinex/directory.h"
#include "inspect/interpretation.h"
#include "inspect/record/record.h"
#include "inspect/record/record_head.h"
#include "inspect/record/value_json.h"
#include "inspect/value_budget.h"

namespace corvinex::inspect {

namespace {

class FlatWriter {
  public:
    FlatWriter(JsonWriter& json, const File* file, const RecordOptions& options)
        : json_(json),
          file_(file),
          options_(options),
          budget_(file == nullptr ? 0 : file->size()) {}

    void write(const FileFacts& facts) {
        json_.beginObject();
        writeName(json_, facts);
        json_.key<"status">().word(statusName(statusOf(file_)));
        if (file_ != nullptr) {
            for (const Directory& directory : file_->directories()) {
                writeDirectory(directory);
            }
        }
        json_.endObject();
    }

  private:
    void writeDirectory(const Directory& directory) {
        const std::string path = directory.path();
        std::set<std::string, std::less<>> names;
        for (const Entry& entry : directory.entries()) {
            if (!options_.tags.contains(entry, path)) {
                continue;
            }
            const std::string_view name = entry.name();
            const auto [place, isNew] =
                names.insert(name.empty() ? std::to_string(entry.number()) : std::string(name));
            if (isNew) {
                writeEntry(path + "." + *place, entry);
            }
        }
    }

    void writeEntry(const std::string& key, const Entry& entry) {
        const bool fits = !entry.isInFile() || budget_.take(entry.byteCount());
        const std::optional<Value> value =
            fits ? readIfPossible([&] { return entry.value(); }) : std::nullopt;
        if (!value) {
            json_.key(key).null();
            return;
        }
        if (!options_.codesAsNumbers) {
            if (const std::optional<std::vector<std::string>> words = entry.words(*value)) {
                json_.key(key);
                writeTexts(*words);
                return;
            }
        }
        const Interpretation interpretation = interpret(entry, *value);
        switch (interpretation.form) {
            case Interpretation::Form::Bytes:
                if (options_.codesAsNumbers && holdsCodes(entry)) {
                    json_.key(key);
                    writePlainNumbers(json_, *value, options_.maxValues);
                }
                return;
            case Interpretation::Form::Text:
            case Interpretation::Form::Texts:
                json_.key(key);
                writeTexts(interpretation.texts);
                return;
            case Interpretation::Form::Number:
            case Interpretation::Form::Numbers:
                json_.key(key);
                writePlainNumbers(json_, *value, options_.maxValues);
        }
    }

    void writeTexts(std::span<const std::string> texts) {
        const std::uint64_t limit = options_.maxValues.value_or(saturated);
        if (texts.size() == 1) {
            json_.string(firstCharacters(texts.front(), limit));
            return;
        }
        json_.beginList();
        for (const std::string& text :
             texts.first(static_cast<std::size_t>(std::min<std::uint64_t>(texts.size(), limit)))) {
            json_.string(text);
        }
        json_.endArray();
    }

    JsonWriter& json_;
    const File* file_;
    const RecordOptions& options_;
    ValueBudget budget_;
};

}  // namespace

void writeFlatRecord(JsonWriter& json, const FileFacts& facts, const File* file,
                     const RecordOptions& options) {
    FlatWriter(json, file, options).write(facts);
}

}  // namespace corvinex::inspect
