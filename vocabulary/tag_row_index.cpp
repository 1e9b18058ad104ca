#include "vocabulary/tag_row_index.h"

namespace corvinex {

TagRowIndex::Page TagRowIndex::emptyPage() noexcept {
    Page page{};
    page.fill(none);
    return page;
}

void TagRowIndex::add(std::uint16_t tag, std::size_t row) {
    std::uint16_t& page = pageOf_[tag / pageLength];
    if (page == 0) {
        page = static_cast<std::uint16_t>(pages_.size());
        pages_.push_back(emptyPage());
    }
    std::uint16_t& place = pages_[page][tag % pageLength];
    if (place == none) {
        place = static_cast<std::uint16_t>(row);
    }
}

}  // namespace corvinex
