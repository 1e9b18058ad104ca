#include "python/binding/table_column.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "tool/tag_catalog.h"
#include "vocabulary/registry.h"

namespace python {
namespace {

using corvinex::inspect::DirectoryKind;
using corvinex::inspect::FieldType;
using corvinex::registry::Encoding;
using corvinex::registry::TagFact;

struct FactKind {
    std::string_view name;
    ColumnKind kind;
};

constexpr std::array factKinds{
    FactKind{"size", ColumnKind::Integer},     FactKind{"modified", ColumnKind::Time},
    FactKind{"width", ColumnKind::Integer},    FactKind{"height", ColumnKind::Integer},
    FactKind{"pages", ColumnKind::Integer},    FactKind{"latitude", ColumnKind::Number},
    FactKind{"longitude", ColumnKind::Number}, FactKind{"altitude", ColumnKind::Number},
};

constexpr std::uint16_t photographicSensitivity = 34855;

constexpr std::array integerTypes{
    FieldType::Byte,  FieldType::SByte, FieldType::Short,  FieldType::SShort, FieldType::Long,
    FieldType::SLong, FieldType::Long8, FieldType::SLong8, FieldType::Ifd,    FieldType::Ifd8};
constexpr std::array fractionTypes{FieldType::Rational, FieldType::SRational, FieldType::Float,
                                   FieldType::Double};
constexpr std::array otherTypes{FieldType::Ascii, FieldType::Utf8, FieldType::Undefined};

template <std::size_t count>
bool allowsOneOf(const TagFact& fact, const std::array<FieldType, count>& types) {
    return std::ranges::any_of(types, [&](FieldType type) {
        return fact.types.contains(static_cast<std::uint16_t>(type));
    });
}

ColumnKind kindOf(DirectoryKind directory, const TagFact* fact) {
    if (fact == nullptr) {
        return ColumnKind::Text;
    }
    if (fact->encoding == Encoding::DateTime || fact->encoding == Encoding::Date) {
        return ColumnKind::Time;
    }
    // The standard lets a sensitivity have several numbers; cameras give one.
    const bool isOne = corvinex::registry::isScalar(directory, fact->number) ||
                       fact->number == photographicSensitivity;
    const bool isText = fact->words != nullptr || allowsOneOf(*fact, otherTypes) || !isOne;
    if (isText) {
        return ColumnKind::Text;
    }
    if (allowsOneOf(*fact, fractionTypes)) {
        return ColumnKind::Number;
    }
    return allowsOneOf(*fact, integerTypes) ? ColumnKind::Integer : ColumnKind::Text;
}

/// What holds what either of two kinds holds.
ColumnKind common(ColumnKind left, ColumnKind right) {
    if (left == right) {
        return left;
    }
    const auto isNumeric = [](ColumnKind kind) {
        return kind == ColumnKind::Integer || kind == ColumnKind::Number;
    };
    return isNumeric(left) && isNumeric(right) ? ColumnKind::Number : ColumnKind::Text;
}

/// A tag in one kind of directory, by the names that people may give it.
struct NamedKind {
    std::uint16_t number;
    std::string name;   ///< the standard's, in lower case
    std::string field;  ///< the result's, in lower case
    ColumnKind kind;
};

/// Made once: the names of a thousand tags take longer than a small table.
const std::vector<NamedKind>& namedKinds() {
    static const std::vector<NamedKind> kinds = [] {
        std::vector<NamedKind> made;
        for (const tool::CatalogTag& tag : tool::allTags()) {
            const std::string_view name = tag.fact == nullptr ? std::string_view() : tag.fact->name;
            made.push_back({tag.number, tool::lowered(name), tool::lowered(tag.field),
                            kindOf(tag.kind, tag.fact)});
        }
        return made;
    }();
    return kinds;
}

/// Of a name the tag that has it in any kind of directory, of a number every tag that has that.
ColumnKind kindOfTags(std::string_view heading) {
    const std::string full = tool::fullName(heading);
    const std::size_t point = full.rfind('.');
    const std::string word =
        tool::lowered(point == std::string::npos ? full : full.substr(point + 1));
    const auto number = corvinex::inspect::tagNumber(word);
    std::optional<ColumnKind> kind;
    for (const NamedKind& tag : namedKinds()) {
        if (number ? tag.number == *number : tag.name == word || tag.field == word) {
            kind = kind ? common(*kind, tag.kind) : tag.kind;
        }
    }
    return kind.value_or(ColumnKind::Text);
}

}  // namespace

ColumnKind kindOf(const tool::CsvColumn& column) {
    if (column.fact.empty()) {
        return kindOfTags(column.heading);
    }
    const auto* const row = std::ranges::find(factKinds, column.fact, &FactKind::name);
    return row == factKinds.end() ? ColumnKind::Text : row->kind;
}

void ColumnCells::addNothing() {
    switch (kind_) {
        case ColumnKind::Integer:
        case ColumnKind::Time:
            integers_.push_back(0);
            break;
        case ColumnKind::Number:
            numbers_.push_back(0);
            break;
        case ColumnKind::Text:
            ends_.push_back(texts_.size());
            break;
    }
    isThere_.push_back(0);
}

void ColumnCells::add(std::int64_t number) {
    integers_.push_back(number);
    isThere_.push_back(1);
}

void ColumnCells::add(double number) {
    numbers_.push_back(number);
    isThere_.push_back(1);
}

void ColumnCells::add(std::string_view text) {
    texts_ += text;
    ends_.push_back(texts_.size());
    isThere_.push_back(1);
}

std::string_view ColumnCells::text(std::size_t row) const {
    const std::size_t start = row == 0 ? 0 : ends_[row - 1];
    return std::string_view(texts_).substr(start, ends_[row] - start);
}

}  // namespace python
