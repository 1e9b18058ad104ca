#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace corvinex {

/// The places of tags in a table by number, found in two steps and made by the compiler: every
/// entry of a file is looked up. The numbers of the table fall into at most pageCount pages of 256.
template <std::size_t pageCount>
class TagIndex {
  public:
    /// What find answers for a tag that is not in the table.
    static constexpr std::uint16_t none = 0xFFFF;

    /// Takes rows with a member number. A number that is there already keeps its place.
    template <class Row>
    constexpr explicit TagIndex(std::span<const Row> table) {
        for (auto& page : pages_) {
            page.fill(none);
        }
        std::uint8_t pagesUsed = 0;
        std::uint16_t place = 0;
        for (const Row& row : table) {
            std::uint8_t& page = pageOf_.at(row.number / pageLength);
            if (page == 0) {
                page = ++pagesUsed;
            }
            std::uint16_t& placeOfTag = pages_.at(page)[row.number % pageLength];
            placeOfTag = placeOfTag == none ? place : placeOfTag;
            ++place;
        }
    }

    [[nodiscard]] constexpr std::uint16_t find(std::uint16_t number) const noexcept {
        return pages_[pageOf_[number / pageLength]][number % pageLength];
    }

  private:
    static constexpr std::size_t pageLength = 256;

    std::array<std::uint8_t, 256> pageOf_{};
    // The first serves all numbers that have no row near them.
    std::array<std::array<std::uint16_t, pageLength>, pageCount + 1> pages_{};
};

/// The number of pages that an index of the table needs.
template <class Row>
constexpr std::size_t countIndexPages(std::span<const Row> table) {
    std::array<bool, 256> isUsed{};
    std::size_t pages = 0;
    for (const Row& row : table) {
        bool& used = isUsed.at(row.number / 256);
        pages += used ? 0 : 1;
        used = true;
    }
    return pages;
}

}  // namespace corvinex
