#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "vocabulary/field_types.h"

namespace corvinex::inspect {

/// How the numbers of a field type are stored.
enum class ElementForm : std::uint8_t { Unsigned, Signed, Floating, Text, Bytes };

/// What is known of a field type.
struct FieldTypeFact {
    std::uint16_t code = 0;
    ElementForm form = ElementForm::Bytes;
    std::uint8_t width = 0;   ///< bytes of one element
    std::uint8_t number = 0;  ///< bytes of one number: half an element in rationals
    std::string_view name;    ///< as the standards write it
};

namespace detail {

/// A type of TIFF 6.0, of its technical notes or of BigTIFF, whose element holds so many numbers.
constexpr FieldTypeFact factOf(std::uint16_t code, ElementForm form, std::uint8_t numbers = 1) {
    constexpr std::string_view prefix = "TIFF_";
    const corvinex::FieldType& type = corvinex::fieldTypes.at(code);
    return {code, form, type.width, static_cast<std::uint8_t>(type.width / numbers),
            type.name.substr(prefix.size())};
}

}  // namespace detail

/// All types: those that the module reads, and UTF-8 (EXIF 3.0).
inline constexpr std::array<FieldTypeFact, 17> fieldTypeFacts{{
    detail::factOf(1, ElementForm::Unsigned),
    detail::factOf(2, ElementForm::Text),
    detail::factOf(3, ElementForm::Unsigned),
    detail::factOf(4, ElementForm::Unsigned),
    detail::factOf(5, ElementForm::Unsigned, 2),
    detail::factOf(6, ElementForm::Signed),
    detail::factOf(7, ElementForm::Bytes),
    detail::factOf(8, ElementForm::Signed),
    detail::factOf(9, ElementForm::Signed),
    detail::factOf(10, ElementForm::Signed, 2),
    detail::factOf(11, ElementForm::Floating),
    detail::factOf(12, ElementForm::Floating),
    detail::factOf(13, ElementForm::Unsigned),
    detail::factOf(16, ElementForm::Unsigned),
    detail::factOf(17, ElementForm::Signed),
    detail::factOf(18, ElementForm::Unsigned),
    {129, ElementForm::Text, 1, 1, "UTF-8"},
}};

namespace detail {

/// Rows by type code up to the last one, for every entry of a file is looked up here.
inline constexpr std::uint8_t noRow = 0xFF;
constexpr auto makeFieldTypeRows() {
    std::array<std::uint8_t, fieldTypeFacts.back().code + std::size_t{1}> rows{};
    rows.fill(noRow);
    for (std::size_t row = 0; row < fieldTypeFacts.size(); ++row) {
        rows.at(fieldTypeFacts.at(row).code) = static_cast<std::uint8_t>(row);
    }
    return rows;
}
inline constexpr auto fieldTypeRows = makeFieldTypeRows();

}  // namespace detail

/// The field type with this code; null when there is none.
[[nodiscard]] constexpr const FieldTypeFact* findFieldType(std::uint16_t code) noexcept {
    if (code >= detail::fieldTypeRows.size() || detail::fieldTypeRows[code] == detail::noRow) {
        return nullptr;
    }
    return &fieldTypeFacts[detail::fieldTypeRows[code]];
}

/// Whether elements are whole numbers, one each.
[[nodiscard]] constexpr bool holdsIntegers(const FieldTypeFact& type) noexcept {
    return (type.form == ElementForm::Unsigned || type.form == ElementForm::Signed) &&
           type.width == type.number;
}

}  // namespace corvinex::inspect
