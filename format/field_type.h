#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace corvinex {

/// How the elements of a field type are stored.
enum class ElementForm : std::uint8_t { Unsigned, Signed, Floating, Text, Bytes };

/// A field type of TIFF 6.0, of its technical notes (IFD), BigTIFF (16 to 18) or EXIF 3.0 (129).
struct FieldTypeFact {
    std::uint16_t code;
    std::uint8_t width;   ///< bytes of one element
    std::uint8_t number;  ///< bytes of one number: half an element in rationals
    ElementForm form;
    std::string_view name;
};

// clang-format off
inline constexpr std::array<FieldTypeFact, 17> fieldTypes{{
    {  1, 1, 1, ElementForm::Unsigned, "BYTE"},
    {  2, 1, 1, ElementForm::Text,     "ASCII"},
    {  3, 2, 2, ElementForm::Unsigned, "SHORT"},
    {  4, 4, 4, ElementForm::Unsigned, "LONG"},
    {  5, 8, 4, ElementForm::Unsigned, "RATIONAL"},
    {  6, 1, 1, ElementForm::Signed,   "SBYTE"},
    {  7, 1, 1, ElementForm::Bytes,    "UNDEFINED"},
    {  8, 2, 2, ElementForm::Signed,   "SSHORT"},
    {  9, 4, 4, ElementForm::Signed,   "SLONG"},
    { 10, 8, 4, ElementForm::Signed,   "SRATIONAL"},
    { 11, 4, 4, ElementForm::Floating, "FLOAT"},
    { 12, 8, 8, ElementForm::Floating, "DOUBLE"},
    { 13, 4, 4, ElementForm::Unsigned, "IFD"},
    { 16, 8, 8, ElementForm::Unsigned, "LONG8"},
    { 17, 8, 8, ElementForm::Signed,   "SLONG8"},
    { 18, 8, 8, ElementForm::Unsigned, "IFD8"},
    {129, 1, 1, ElementForm::Text,     "UTF-8"},
}};
// clang-format on

namespace detail {

/// Rows by type code up to the last one, for every entry of a file is looked up here.
inline constexpr std::uint8_t noRow = 0xFF;
inline constexpr auto fieldTypeRows = [] {
    std::array<std::uint8_t, fieldTypes.back().code + std::size_t{1}> rows{};
    rows.fill(noRow);
    for (std::size_t row = 0; row < fieldTypes.size(); ++row) {
        rows.at(fieldTypes.at(row).code) = static_cast<std::uint8_t>(row);
    }
    return rows;
}();

}  // namespace detail

/// The field type with this code; null when there is none.
[[nodiscard]] constexpr const FieldTypeFact* findFieldType(std::uint16_t code) noexcept {
    if (code >= detail::fieldTypeRows.size() || detail::fieldTypeRows[code] == detail::noRow) {
        return nullptr;
    }
    return &fieldTypes[detail::fieldTypeRows[code]];
}

/// Whether elements are whole numbers, one each.
[[nodiscard]] constexpr bool holdsIntegers(const FieldTypeFact& type) noexcept {
    return (type.form == ElementForm::Unsigned || type.form == ElementForm::Signed) &&
           type.width == type.number;
}

}  // namespace corvinex
