#include "tool/catalogue/row_collector.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <limits>
#include <span>
#include <utility>
#include <variant>

#include "inspect/record/derived_json.h"
#include "inspect/record/entry_content.h"
#include "inspect/record/finding_json.h"
#include "inspect/record/record_head.h"
#include "inspect/record/value_json.h"

namespace tool {
namespace {

using corvinex::inspect::BasicRational;
using corvinex::inspect::DerivedFact;
using corvinex::inspect::Directory;
using corvinex::inspect::DirectoryRecord;
using corvinex::inspect::Entry;
using corvinex::inspect::EntryContent;
using corvinex::inspect::Finding;
using corvinex::inspect::Interpretation;
using corvinex::inspect::JsonWriter;
using corvinex::inspect::statusName;

/// A block is handed on when it takes more.
constexpr std::size_t blockSize = std::size_t{1} << 20U;

/// One JSON value after the other, each without the end of its line.
class JsonTexts {
  public:
    JsonWriter& json() { return json_; }
    /// What was written since the last call, at the end of a text.
    void appendTo(std::string& texts) {
        json_.flush();
        sink_.text.pop_back();
        texts += sink_.text;
        sink_.text.clear();
    }
    std::string take() {
        std::string text;
        appendTo(text);
        return text;
    }

  private:
    struct Sink final : corvinex::inspect::TextSink {
        void write(std::string_view part) override { text += part; }
        std::string text;
    };
    Sink sink_;
    JsonWriter json_{sink_, JsonWriter::Style::OneLine};
};

/// The one number of a value, where SQLite has a number that is the same; of a rational the
/// nearest.
struct NumberVisitor {
    TagRow& row;
    void operator()(std::string_view /*characters*/) const {}
    template <class Number>
    void operator()(std::span<const Number> elements) const {
        if (elements.size() == 1) {
            set(elements.front());
        }
    }

  private:
    template <std::integral Number>
    void set(Number number) const {
        if (std::in_range<std::int64_t>(number)) {
            row.integer = static_cast<std::int64_t>(number);
        }
    }
    template <std::floating_point Number>
    void set(Number number) const {
        if (std::isfinite(number)) {
            row.real = number;
        }
    }
    template <class Number>
    void set(const BasicRational<Number>& number) const {
        if (number.denominator != 0) {
            row.real =
                static_cast<double>(number.numerator) / static_cast<double>(number.denominator);
        }
    }
};

/// A fact as a column's value, when it has the column's type.
template <class Type>
void take(std::optional<Type>& column, const DerivedFact& fact) {
    if (const auto* const value = std::get_if<Type>(&fact.value)) {
        column = *value;
    }
}
void take(std::string& column, const DerivedFact& fact) {
    if (const auto* const value = std::get_if<std::string>(&fact.value)) {
        column = *value;
    }
}

template <class Row>
struct FactColumn {
    std::string_view name;
    void (*set)(Row& row, const DerivedFact& fact);
};

constexpr std::array fileColumns{
    FactColumn<FileRow>{"width",
                        [](FileRow& row, const DerivedFact& fact) { take(row.width, fact); }},
    FactColumn<FileRow>{"height",
                        [](FileRow& row, const DerivedFact& fact) { take(row.height, fact); }},
    FactColumn<FileRow>{"pages",
                        [](FileRow& row, const DerivedFact& fact) { take(row.pages, fact); }},
    FactColumn<FileRow>{"taken",
                        [](FileRow& row, const DerivedFact& fact) { take(row.taken, fact); }},
    FactColumn<FileRow>{"latitude",
                        [](FileRow& row, const DerivedFact& fact) { take(row.latitude, fact); }},
    FactColumn<FileRow>{"longitude",
                        [](FileRow& row, const DerivedFact& fact) { take(row.longitude, fact); }},
    FactColumn<FileRow>{"altitude",
                        [](FileRow& row, const DerivedFact& fact) { take(row.altitude, fact); }},
    FactColumn<FileRow>{"make",
                        [](FileRow& row, const DerivedFact& fact) { take(row.make, fact); }},
    FactColumn<FileRow>{"model",
                        [](FileRow& row, const DerivedFact& fact) { take(row.model, fact); }},
    FactColumn<FileRow>{"lens",
                        [](FileRow& row, const DerivedFact& fact) { take(row.lens, fact); }},
    FactColumn<FileRow>{"crs", [](FileRow& row, const DerivedFact& fact) { take(row.crs, fact); }},
};

constexpr std::array directoryColumns{
    FactColumn<DirectoryRow>{
        "compression",
        [](DirectoryRow& row, const DerivedFact& fact) { take(row.compression, fact); }},
    FactColumn<DirectoryRow>{
        "photometric",
        [](DirectoryRow& row, const DerivedFact& fact) { take(row.photometric, fact); }},
    FactColumn<DirectoryRow>{
        "strips", [](DirectoryRow& row, const DerivedFact& fact) { take(row.strips, fact); }},
    FactColumn<DirectoryRow>{
        "tiles", [](DirectoryRow& row, const DerivedFact& fact) { take(row.tiles, fact); }},
    FactColumn<DirectoryRow>{
        "bytes", [](DirectoryRow& row, const DerivedFact& fact) { take(row.bytes, fact); }},
};

template <class Row, std::size_t size>
void takeFacts(Row& row, const std::array<FactColumn<Row>, size>& columns,
               std::span<const DerivedFact> facts) {
    for (const DerivedFact& fact : facts) {
        const auto column = std::ranges::find(columns, fact.name, &FactColumn<Row>::name);
        if (column != columns.end()) {
            column->set(row, fact);
        }
    }
}

template <class Read>
std::vector<DerivedFact> factsIfReadable(Read read) {
    return corvinex::inspect::readIfPossible([&] { return std::optional(read()); })
        .value_or(std::vector<DerivedFact>());
}

class RowCollector {
  public:
    RowCollector(const InspectedFile& file, std::uint64_t maxValues, RowBlock& block,
                 BlockSink& sink)
        : inspected_(file),
          file_(file.file()),
          maxValues_(maxValues),
          sink_(sink),
          budget_(file_ == nullptr ? 0 : file_->size()),
          block_(block) {}

    void collect(const std::string& path, const std::optional<FileStamp>& stamp) {
        block_.file = fileRow(path, stamp);
        if (file_ != nullptr) {
            reserve();
            std::uint32_t position = 0;
            for (const Directory& directory : file_->directories()) {
                collectDirectory(directory, position++);
            }
        }
        // Facts about the file are the last to read values, as in a record.
        for (const Finding& finding : corvinex::inspect::findingsOf(file_)) {
            block_.findings.push_back(findingRow(finding));
        }
        block_.isLast = true;
        sink_.put(block_);
    }

  private:
    void reserve() {
        constexpr std::size_t usualText = 32;
        std::size_t count = 0;
        for (const Directory& directory : file_->directories()) {
            count += directory.entries().size();
        }
        count = std::min(count, blockSize / sizeof(TagRow));
        block_.tags.reserve(count);
        block_.texts.reserve(count * usualText);
        block_.directories.reserve(std::min(file_->directories().size(), count));
    }

    FileRow fileRow(const std::string& path, const std::optional<FileStamp>& stamp) {
        const corvinex::inspect::FileFacts& facts = inspected_.facts();
        FileRow row;
        row.path = path;
        row.name = facts.name;
        row.stamp = stamp;
        row.size = facts.size;
        row.modified = facts.modified ? corvinex::inspect::isoTime(*facts.modified) : std::string();
        row.status = statusName(corvinex::inspect::statusOf(file_));
        row.reason = file_ == nullptr ? inspected_.errorText() : std::string();
        if (file_ != nullptr) {
            row.container = file_->container() ? containerName(*file_->container()) : "";
            row.byteOrder = file_->byteOrder() ? byteOrderName(*file_->byteOrder()) : "";
            row.headerOffset = file_->headerOffset();
        }
        const std::vector<DerivedFact> derived = factsIfReadable(
            [&] { return file_ == nullptr ? std::vector<DerivedFact>() : file_->derived(); });
        row.derived = derivedJson(derived);
        takeFacts(row, fileColumns, derived);
        return row;
    }

    std::string derivedJson(std::span<const DerivedFact> facts) {
        writeDerived(json_.json(), facts);
        return json_.take();
    }

    void collectDirectory(const Directory& directory, std::uint32_t position) {
        DirectoryRow row;
        row.position = position;
        if (directory.record().parent != DirectoryRecord::none) {
            row.parent = directory.record().parent;
        }
        row.offset = directory.offset();
        row.entries = directory.entries().size();
        row.kind = kindName(directory.kind());
        row.path = directory.path();
        const std::vector<DerivedFact> derived =
            factsIfReadable([&] { return directory.derived(); });
        row.derived = derivedJson(derived);
        takeFacts(row, directoryColumns, derived);
        block_.directories.push_back(std::move(row));
        std::uint32_t place = 0;
        for (const Entry& entry : directory.entries()) {
            collectTag(entry, position, place++);
            if (block_.bytes() > blockSize) {
                sink_.put(block_);
            }
        }
    }

    void collectTag(const Entry& entry, std::uint32_t directory, std::uint32_t place) {
        TagRow& row = block_.tags.emplace_back();
        row.directory = directory;
        row.entry = place;
        row.number = entry.number();
        row.typeCode = entry.typeCode();
        row.count = entry.count();
        row.offset = entry.offset();
        row.name = entry.name();
        row.field = entry.fieldName() == row.name ? std::string_view() : entry.fieldName();
        row.typeName = entry.typeName();
        const EntryContent content = readContent(entry, budget_);
        row.isTruncated = content.isBeyondBudget;
        if (content.value) {
            collectValue(row, content);
        }
        if (entry.isPointer()) {
            collectTargets(row, entry);
        }
    }

    void collectValue(TagRow& row, const EntryContent& content) {
        using Form = Interpretation::Form;
        const Interpretation& interpretation = content.interpretation;
        row.isTruncated = writeValue(json_.json(), *content.value, interpretation, maxValues_);
        row.json = placeOfJson();
        if (interpretation.form == Form::Number || interpretation.form == Form::Numbers) {
            std::visit(NumberVisitor{row}, content.value->elements());
        } else if (interpretation.texts.size() == 1) {
            row.text = placeOf(
                corvinex::inspect::firstCharacters(interpretation.texts.front(), maxValues_));
        }
        row.charset = interpretation.charset;
        if (!interpretation.rest.empty()) {
            const std::size_t size = static_cast<std::size_t>(
                std::min<std::uint64_t>(interpretation.rest.size(), maxValues_));
            row.rest = placeOf(
                std::string(interpretation.rest.begin(),
                            interpretation.rest.begin() + static_cast<std::ptrdiff_t>(size)));
            row.isTruncated = row.isTruncated || size < interpretation.rest.size();
        }
        if (content.text) {
            row.meaning = placeOf(*content.text);
        }
    }

    void collectTargets(TagRow& row, const Entry& entry) {
        const auto paths = targetPaths(*file_, entry, budget_);
        JsonWriter& json = json_.json();
        if (!paths) {
            json.null();
            row.isTruncated = true;
        } else {
            json.beginList();
            for (const std::string& path : *paths) {
                if (path.empty()) {
                    json.null();
                } else {
                    json.string(path);
                }
            }
            json.endArray();
        }
        row.directories = placeOfJson();
    }

    FindingRow findingRow(const Finding& finding) {
        writeArguments(json_.json(), finding);
        return {.id = finding.id,
                .severity = severityName(finding.severity),
                .tag = finding.tag,
                .directory = finding.directory,
                .arguments = json_.take(),
                .text = finding.text};
    }

    TextPlace placeOf(std::string_view text) {
        const std::size_t start = block_.texts.size();
        block_.texts += text;
        return {start, text.size()};
    }
    TextPlace placeOfJson() {
        const std::size_t start = block_.texts.size();
        json_.appendTo(block_.texts);
        return {start, block_.texts.size() - start};
    }

    const InspectedFile& inspected_;
    const corvinex::inspect::File* file_;
    std::uint64_t maxValues_;
    BlockSink& sink_;
    corvinex::inspect::ValueBudget budget_;
    JsonTexts json_;
    RowBlock& block_;
};

}  // namespace

void collectRows(const InspectedFile& file, const std::string& path,
                 const std::optional<FileStamp>& stamp, std::uint64_t maxValues, RowBlock& block,
                 BlockSink& sink) {
    RowCollector(file, maxValues, block, sink).collect(path, stamp);
}

}  // namespace tool
