#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "vocabulary/registry.h"

namespace corvinex::registry {

/// The rows of a table by number, two steps away: every entry of a file is looked up several times.
/// The numbers lie in few ranges, so only pages that have a row are kept, and one without any for
/// all others.
struct IndexedTags {
    static constexpr std::size_t pageLength = 64;
    static constexpr std::size_t pageCount = 65536 / pageLength;
    static constexpr std::uint16_t none = 0xFFFF;
    using Page = std::array<std::uint16_t, pageLength>;

    std::span<const TagFact> rows;
    std::span<const std::uint8_t, pageCount> pageOf;
    std::span<const Page> pages;

    [[nodiscard]] const TagFact* find(std::uint16_t number) const noexcept {
        const std::uint16_t row = pages[pageOf[number / pageLength]][number % pageLength];
        return row == none ? nullptr : &rows[row];
    }
};

/// How many pages have a row. The rows ascend.
template <class Rows>
constexpr std::size_t countPages(const Rows& rows) {
    std::size_t pages = 0;
    std::size_t last = IndexedTags::pageCount;
    for (const TagFact& fact : rows) {
        const std::size_t page = fact.number / IndexedTags::pageLength;
        pages += page != last ? 1 : 0;
        last = page;
    }
    return pages;
}

/// The index of a table with so many pages, made while it is compiled.
template <std::size_t pages>
struct TagIndex {
    std::array<std::uint8_t, IndexedTags::pageCount> pageOf{};
    std::array<IndexedTags::Page, pages + 1> rows{};  // the first is the one without any

    template <class Rows>
    constexpr explicit TagIndex(const Rows& table) {
        static_assert(pages <= 0xFF);
        for (auto& page : rows) {
            page.fill(IndexedTags::none);
        }
        std::uint8_t used = 0;
        std::uint16_t row = 0;
        for (const TagFact& fact : table) {
            std::uint8_t& page = pageOf[fact.number / IndexedTags::pageLength];
            if (page == 0) {
                page = ++used;
            }
            rows[page][fact.number % IndexedTags::pageLength] = row;
            ++row;
        }
    }
};

}  // namespace corvinex::registry
