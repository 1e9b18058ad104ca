#include "tool/csv_command.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "inspect/file_content.h"
#include "inspect/record/record_head.h"
#include "inspect/record/value_json.h"
#include "inspect/value_budget.h"
#include "tool/csv_cell.h"
#include "tool/csv_columns.h"
#include "tool/many_files.h"

namespace tool {
namespace {

using corvinex::inspect::Container;
using corvinex::inspect::DerivedFact;
using corvinex::inspect::Directory;
using corvinex::inspect::DirectoryKind;
using corvinex::inspect::DirectoryRecord;
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

/// For each directory of a file the one of the main chain that leads to it.
std::vector<std::uint32_t> rootsOf(std::span<const Directory> directories) {
    std::vector<std::uint32_t> roots;
    roots.reserve(directories.size());
    for (std::uint32_t index = 0; index < directories.size(); ++index) {
        const std::uint32_t parent = directories[index].record().parent;
        roots.push_back(parent == DirectoryRecord::none ? index : roots[parent]);
    }
    return roots;
}

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
        std::vector<const Entry*> entries(options_.columns.columns().size());
        if (file_ != nullptr) {
            const std::span<const Directory> directories = file_->directories();
            const std::vector<std::uint32_t> roots = rootsOf(directories);
            for (std::size_t index = 0; index < directories.size(); ++index) {
                // What a thumbnail is says nothing of the photo.
                const bool isOfThumbnail = file_->container() == Container::Jpeg &&
                                           directories[roots[index]].record().chainIndex == 1;
                options_.columns.collect(
                    directories[index],
                    isOfThumbnail ? CsvColumns::Wanted::ThoseWithPath : CsvColumns::Wanted::All,
                    entries);
            }
        }
        writeRow({}, entries);
    }

    void writeDirectories() {
        const std::span<const Directory> directories = file_->directories();
        const std::vector<std::uint32_t> roots = rootsOf(directories);
        // In the order of the main chain, and of one chain's directory in that of the walk.
        std::vector<std::uint32_t> order(directories.size());
        for (std::uint32_t index = 0; index < order.size(); ++index) {
            order[index] = index;
        }
        std::ranges::stable_sort(order, {}, [&](std::uint32_t index) { return roots[index]; });
        for (std::size_t place = 0; place < order.size();) {
            const std::uint32_t root = roots[order[place]];
            std::vector<const Entry*> entries(options_.columns.columns().size());
            for (; place < order.size() && roots[order[place]] == root; ++place) {
                collect(directories[order[place]], entries);
            }
            writeRow(directories[root].path(), entries);
        }
    }

    /// What stands in a sub-image says nothing of the image above it.
    void collect(const Directory& directory, std::span<const Entry*> entries) const {
        bool isOfSubImage = false;
        const Directory* step = &directory;
        while (step->record().parent != DirectoryRecord::none) {
            isOfSubImage = isOfSubImage || step->kind() == DirectoryKind::Sub;
            step = &file_->directories()[step->record().parent];
        }
        options_.columns.collect(
            directory, isOfSubImage ? CsvColumns::Wanted::ThoseWithPath : CsvColumns::Wanted::All,
            entries);
    }

    void writeRow(std::string_view path, std::span<const Entry* const> entries) {
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
