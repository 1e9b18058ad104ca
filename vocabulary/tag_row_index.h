#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvinex {

/// The places of tags in a table by number, two steps away: every entry of a file is named, checked
/// and decoded by tables, so that looking things up is a large part of reading many directories.
class TagRowIndex {
  public:
    /// What find answers for a tag that is not in the table.
    static constexpr std::size_t none = 0xFFFF;

    TagRowIndex() : pages_(1, emptyPage()) {}
    /// Takes the number of each row, of at most 65,535, in their order.
    template <class Table, class NumberOf>
    TagRowIndex(const Table& table, NumberOf numberOf) : TagRowIndex() {
        std::size_t row = 0;
        for (const auto& element : table) {
            add(numberOf(element), row);
            ++row;
        }
    }

    /// A number that is there already keeps its row.
    void add(std::uint16_t tag, std::size_t row);

    [[nodiscard]] std::size_t find(std::uint16_t tag) const noexcept {
        return pages_[pageOf_[tag / pageLength]][tag % pageLength];
    }

  private:
    static constexpr std::size_t pageLength = 256;
    using Page = std::array<std::uint16_t, pageLength>;

    static Page emptyPage() noexcept;

    std::array<std::uint16_t, 256> pageOf_{};
    std::vector<Page> pages_;  // the first serves all numbers that have no row near them
};

}  // namespace corvinex
