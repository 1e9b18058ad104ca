#include "tool/csv_command.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "inspect/record/record_head.h"
#include "inspect/record/value_json.h"
#include "inspect/value_budget.h"
#include "tool/csv_cell.h"
#include "tool/csv_columns.h"
#include "tool/many_files.h"
#include "tool/row_entries.h"

namespace tool {
namespace {

using corvinex::inspect::DerivedFact;
using corvinex::inspect::Directory;
using corvinex::inspect::Entry;
using corvinex::inspect::TextSink;

constexpr std::string_view endOfRow = "\r\n";

struct CsvOptions {
    CsvColumns columns;
    CellOptions cells;
    bool hasRowForFile = false;
};

/// A fact that is told of the file itself rather than derived from its tags.
struct StoredFact {
    std::string_view name;
    std::string (*text)(const InspectedFile& file);
};

constexpr std::array storedFacts{
    StoredFact{"status",
               [](const InspectedFile& file) {
                   return std::string(
                       corvinex::inspect::statusName(corvinex::inspect::statusOf(file.file())));
               }},
    StoredFact{"size",
               [](const InspectedFile& file) {
                   const auto size = file.facts().size;
                   return size ? std::to_string(*size) : std::string();
               }},
    StoredFact{"modified",
               [](const InspectedFile& file) {
                   const auto time = file.facts().modified;
                   return time ? corvinex::inspect::isoTime(*time) : std::string();
               }},
    StoredFact{"container",
               [](const InspectedFile& file) {
                   return file.isImage() ? std::string(containerName(*file.file()->container()))
                                         : std::string();
               }},
    StoredFact{"byte_order",
               [](const InspectedFile& file) {
                   const auto order =
                       file.file() == nullptr ? std::nullopt : file.file()->byteOrder();
                   return order ? std::string(byteOrderName(*order)) : std::string();
               }},
};

/// The rows of one file.
class CsvRows {
  public:
    CsvRows(const InspectedFile& file, const CsvOptions& options, TextSink& sink)
        : inspected_(file),
          file_(file.file()),
          options_(options),
          sink_(sink),
          name_(corvinex::inspect::validUtf8(file.facts().name)),
          budget_(file_ == nullptr ? 0 : file_->size()) {
        if (file_ != nullptr) {
            facts_ = corvinex::inspect::readIfPossible([&] {
                         return std::optional(file_->derived());
                     }).value_or(std::vector<DerivedFact>());
        }
    }

    void write() {
        if (options_.hasRowForFile || file_ == nullptr || file_->directories().empty()) {
            writeFile();
            return;
        }
        writeDirectories();
    }

  private:
    void writeFile() {
        writeRow({}, file_ == nullptr ? std::vector<const Entry*>(options_.columns.columns().size())
                                      : entriesOfFile(*file_, options_.columns));
    }

    void writeDirectories() {
        forEachDirectoryRow(*file_, options_.columns,
                            [this](const Directory& directory, RowEntries entries) {
                                writeRow(directory.path(), entries);
                            });
    }

    void writeRow(std::string_view path, RowEntries entries) {
        std::string row;
        addCell(row, name_);
        if (!options_.hasRowForFile) {
            row.append(",").append(path);
        }
        const std::span<const CsvColumn> columns = options_.columns.columns();
        for (std::size_t column = 0; column < columns.size(); ++column) {
            row += ',';
            addCell(row, columns[column].fact.empty() ? entryText(entries[column])
                                                      : factText(columns[column].fact));
        }
        sink_.write(row.append(endOfRow));
    }

    std::string entryText(const Entry* entry) {
        if (entry == nullptr || !entry->isInFile() || !budget_.take(entry->byteCount())) {
            return {};
        }
        return corvinex::inspect::readIfPossible([&]() -> std::optional<std::string> {
                   const auto value = entry->value();
                   return value ? std::optional(cellText(*entry, *value, options_.cells))
                                : std::nullopt;
               })
            .value_or(std::string());
    }

    [[nodiscard]] std::string factText(std::string_view name) const {
        const auto* const stored = std::ranges::find(storedFacts, name, &StoredFact::name);
        if (stored != storedFacts.end()) {
            return stored->text(inspected_);
        }
        const auto fact = std::ranges::find(facts_, name, &DerivedFact::name);
        return fact == facts_.end() ? std::string() : cellText(*fact);
    }

    const InspectedFile& inspected_;
    const corvinex::inspect::File* file_;
    const CsvOptions& options_;
    TextSink& sink_;
    std::string name_;
    corvinex::inspect::ValueBudget budget_;
    std::vector<DerivedFact> facts_;
};

CsvOptions csvOptions(const Arguments& arguments) {
    const bool hasRowForFile = arguments.isGiven("files");
    const std::vector<std::string>& asked = arguments.texts("tag");
    const std::vector<std::string> usual =
        hasRowForFile ? CsvColumns::forFiles() : CsvColumns::forDirectories();
    return {.columns = CsvColumns(asked.empty() ? usual : asked),
            .cells = {.maxValues = arguments.whole("max-values"),
                      .codesAsNumbers = arguments.isGiven("numeric")},
            .hasRowForFile = hasRowForFile};
}

}  // namespace

ExitStatus runCsv(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    const CsvOptions options = csvOptions(arguments);
    const ManyFiles files = manyFiles(arguments);
    std::string heading = options.hasRowForFile ? "file" : "file,directory";
    for (const CsvColumn& column : options.columns.columns()) {
        heading += ',';
        addCell(heading, column.heading);
    }
    out << heading << endOfRow;
    const auto task = [&](const InspectedFile& file, TextSink& sink, std::size_t /*thread*/) {
        CsvRows(file, options, sink).write();
    };
    return inspectFiles(files, task, out, err);
}

}  // namespace tool
