#include "python/binding/table_rows.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <concepts>
#include <ctime>
#include <limits>
#include <string_view>
#include <utility>
#include <variant>

#include "corvinex/derived.h"
#include "corvinex/file.h"
#include "inspect/field_type.h"
#include "inspect/interpretation.h"
#include "inspect/reading/times.h"
#include "inspect/record/finding_json.h"
#include "inspect/record/record_head.h"
#include "inspect/value_budget.h"
#include "tool/row_entries.h"

namespace python {
namespace {

using corvinex::inspect::BasicRational;
using corvinex::inspect::DerivedFact;
using corvinex::inspect::Entry;
using corvinex::inspect::Value;

constexpr std::int64_t second = 1'000'000'000;

/// A time that fits into nanoseconds, which pass from 1677 to 2262.
std::optional<std::int64_t> nanoseconds(std::int64_t seconds) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max() / second;
    return seconds < most && seconds > -most ? std::optional(seconds * second) : std::nullopt;
}

int numberAt(std::string_view digits, std::size_t place, std::size_t count) {
    int number = 0;
    for (const char digit : digits.substr(place, count)) {
        number = 10 * number + (digit - '0');
    }
    return number;
}

/// Of "2024-03-05" and "14:07:09", or of a date alone.
std::optional<std::int64_t> timeOf(std::string_view date, std::string_view time) {
    namespace chrono = std::chrono;
    const chrono::year_month_day day{chrono::year(numberAt(date, 0, 4)),
                                     chrono::month(static_cast<unsigned>(numberAt(date, 5, 2))),
                                     chrono::day(static_cast<unsigned>(numberAt(date, 8, 2)))};
    if (!day.ok()) {
        return std::nullopt;
    }
    chrono::seconds clock(0);
    if (!time.empty()) {
        // A leap second has no nanoseconds of its own: those of the next minute tell another time.
        constexpr int leapSecond = 60;
        if (numberAt(time, 6, 2) == leapSecond) {
            return std::nullopt;
        }
        clock = chrono::hours(numberAt(time, 0, 2)) + chrono::minutes(numberAt(time, 3, 2)) +
                chrono::seconds(numberAt(time, 6, 2));
    }
    return nanoseconds((chrono::sys_days(day).time_since_epoch() + clock).count());
}

std::optional<std::int64_t> timeOf(std::string_view text) {
    namespace reading = corvinex::inspect::reading;
    if (const auto moment = reading::momentOf(text)) {
        return timeOf(moment->date, moment->time);
    }
    const auto date = reading::dateOf(text);
    return date ? timeOf(*date, {}) : std::nullopt;
}

/// The one number of a value, where it fits.
struct IntegerOf {
    std::optional<std::int64_t> operator()(std::string_view /*text*/) const { return std::nullopt; }
    template <class Number>
    std::optional<std::int64_t> operator()(std::span<const Number> elements) const {
        if constexpr (std::integral<Number>) {
            if (elements.size() == 1 && std::in_range<std::int64_t>(elements.front())) {
                return static_cast<std::int64_t>(elements.front());
            }
        }
        return std::nullopt;
    }
};

struct NumberOf {
    std::optional<double> operator()(std::string_view /*text*/) const { return std::nullopt; }
    template <class Number>
    std::optional<double> operator()(std::span<const Number> elements) const {
        return elements.size() == 1 ? quotient(elements.front()) : std::nullopt;
    }
    template <class Number>
    static std::optional<double> quotient(Number number) {
        return static_cast<double>(number);
    }
    template <class Number>
    static std::optional<double> quotient(const BasicRational<Number>& number) {
        return number.denominator == 0 ? std::nullopt
                                       : std::optional(static_cast<double>(number.numerator) /
                                                       static_cast<double>(number.denominator));
    }
};

/// A byte of no type is no number, though it is held as one.
template <class Visitor>
auto numberOf(const Entry& entry, const Value& value) {
    using corvinex::inspect::ElementForm;
    const auto* type = corvinex::inspect::findFieldType(entry.typeCode());
    const bool isNumber = type != nullptr && type->form != ElementForm::Bytes;
    return isNumber ? std::visit(Visitor(), value.elements()) : std::nullopt;
}

template <class Cell>
void addOr(ColumnCells& cells, const std::optional<Cell>& cell) {
    if (cell) {
        cells.add(*cell);
    } else {
        cells.addNothing();
    }
}

/// The cells of one file's rows.
class FileCells {
  public:
    FileCells(const tool::InspectedFile& inspected, const TablePlan& plan)
        : inspected_(inspected),
          file_(inspected.file()),
          plan_(plan),
          budget_(file_ == nullptr ? 0 : file_->size()) {
        if (file_ != nullptr && plan.needsFacts) {
            facts_ = corvinex::inspect::readIfPossible([&] {
                         return std::optional(file_->derived());
                     }).value_or(std::vector<DerivedFact>());
        }
    }

    void addFact(ColumnCells& cells, std::string_view name) const {
        if (name == "modified") {
            const auto time = inspected_.facts().modified;
            addOr(cells, time ? nanoseconds(*time) : std::nullopt);
        } else if (cells.kind() == ColumnKind::Text) {
            addTextFact(cells, name);
        } else {
            addNumberFact(cells, name);
        }
    }

    void addEntry(ColumnCells& cells, const Entry* entry) {
        const std::optional<Value> value = read(entry);
        if (!value) {
            cells.addNothing();
            return;
        }
        switch (cells.kind()) {
            case ColumnKind::Integer:
                addOr(cells, numberOf<IntegerOf>(*entry, *value));
                break;
            case ColumnKind::Number:
                addOr(cells, numberOf<NumberOf>(*entry, *value));
                break;
            case ColumnKind::Time:
                addTime(cells, *entry, *value);
                break;
            case ColumnKind::Text:
                cells.add(std::string_view(tool::cellText(*entry, *value, plan_.cells)));
                break;
        }
    }

  private:
    std::optional<Value> read(const Entry* entry) {
        if (entry == nullptr || !entry->isInFile() || !budget_.take(entry->byteCount())) {
            return std::nullopt;
        }
        return corvinex::inspect::readIfPossible([&] { return entry->value(); });
    }

    static void addTime(ColumnCells& cells, const Entry& entry, const Value& value) {
        const auto meaning = corvinex::inspect::interpret(entry, value);
        const bool isText = meaning.form == corvinex::inspect::Interpretation::Form::Text;
        addOr(cells, isText ? timeOf(meaning.texts.front()) : std::nullopt);
    }

    void addTextFact(ColumnCells& cells, std::string_view name) const {
        const std::optional<std::string> text = textFact(name);
        addOr(cells, text ? std::optional(std::string_view(*text)) : std::nullopt);
    }

    [[nodiscard]] std::optional<std::string> textFact(std::string_view name) const {
        if (name == "status") {
            return std::string(statusName(corvinex::inspect::statusOf(file_)));
        }
        if (name == "container") {
            return inspected_.isImage()
                       ? std::optional(std::string(containerName(*file_->container())))
                       : std::nullopt;
        }
        if (name == "byte_order") {
            const auto order = file_ == nullptr ? std::nullopt : file_->byteOrder();
            return order ? std::optional(std::string(byteOrderName(*order))) : std::nullopt;
        }
        const DerivedFact* fact = find(name);
        return fact == nullptr ? std::nullopt : std::optional(tool::cellText(*fact));
    }

    void addNumberFact(ColumnCells& cells, std::string_view name) const {
        const std::optional<std::uint64_t> size =
            name == "size" ? inspected_.facts().size : std::nullopt;
        const DerivedFact* fact = find(name);
        const auto* whole = fact == nullptr ? nullptr : std::get_if<std::uint64_t>(&fact->value);
        const auto* number = fact == nullptr ? nullptr : std::get_if<double>(&fact->value);
        if (size || whole != nullptr) {
            const std::uint64_t integer = size ? *size : *whole;
            const bool fits = std::in_range<std::int64_t>(integer);
            addOr(cells, fits ? std::optional(static_cast<std::int64_t>(integer)) : std::nullopt);
        } else if (number != nullptr) {
            cells.add(*number);
        } else {
            cells.addNothing();
        }
    }

    [[nodiscard]] const DerivedFact* find(std::string_view name) const {
        const auto fact = std::ranges::find(facts_, name, &DerivedFact::name);
        return fact == facts_.end() ? nullptr : &*fact;
    }

    const tool::InspectedFile& inspected_;
    const corvinex::inspect::File* file_;
    const TablePlan& plan_;
    corvinex::inspect::ValueBudget budget_;
    std::vector<DerivedFact> facts_;
};

/// The IDs of what is wrong with a file, each once, parted by blanks.
std::string findingIds(const tool::InspectedFile& file) {
    std::vector<std::string_view> ids;
    std::string text;
    for (const corvinex::inspect::Finding& finding : corvinex::inspect::findingsOf(file.file())) {
        if (std::ranges::find(ids, finding.id) == ids.end()) {
            ids.push_back(finding.id);
            text.append(text.empty() ? "" : " ").append(finding.id);
        }
    }
    return text;
}

bool isStored(std::string_view fact) {
    return fact == "status" || fact == "size" || fact == "modified" || fact == "container" ||
           fact == "byte_order";
}

}  // namespace

TablePlan::TablePlan(std::span<const std::string> names, tool::CellOptions cellOptions)
    : columns(names), cells(cellOptions) {
    for (const tool::CsvColumn& column : columns.columns()) {
        kinds.push_back(kindOf(column));
        needsFacts = needsFacts || !(column.fact.empty() || isStored(column.fact));
    }
}

TableRows::TableRows(const TablePlan& plan) : plan_(&plan) {
    columns_.assign(FirstPlanned, ColumnCells(ColumnKind::Text));
    for (const ColumnKind kind : plan.kinds) {
        columns_.emplace_back(kind);
    }
}

void TableRows::add(const tool::InspectedFile& file, std::uint64_t number) {
    const std::size_t first = columns_[File].size();
    const std::string_view status = statusName(corvinex::inspect::statusOf(file.file()));
    const std::string findings = findingIds(file);
    const std::span<const tool::CsvColumn> planned = plan_->columns.columns();
    FileCells cells(file, *plan_);
    const auto addRow = [&](const std::optional<std::string>& path, tool::RowEntries entries) {
        columns_[File].add(std::string_view(file.facts().name));
        addOr(columns_[Directory], path ? std::optional(std::string_view(*path)) : std::nullopt);
        columns_[Status].add(status);
        columns_[Findings].add(std::string_view(findings));
        for (std::size_t index = 0; index < planned.size(); ++index) {
            ColumnCells& column = columns_[FirstPlanned + index];
            if (planned[index].fact.empty()) {
                cells.addEntry(column, entries[index]);
            } else {
                cells.addFact(column, planned[index].fact);
            }
        }
    };
    if (file.file() == nullptr || file.file()->directories().empty()) {
        addRow(std::nullopt, std::vector<const Entry*>(planned.size()));
    } else {
        tool::forEachDirectoryRow(
            *file.file(), plan_->columns,
            [&](const corvinex::inspect::Directory& directory, tool::RowEntries entries) {
                addRow(directory.path(), entries);
            });
    }
    extents_.push_back({number, first, columns_[File].size() - first});
}

}  // namespace python
