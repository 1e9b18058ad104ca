#include "tool/reading_order.h"

#include <cstddef>
#include <span>

namespace tool {

std::vector<std::uint32_t> readingOrder(const corvinex::inspect::File& file) {
    using corvinex::inspect::Directory;
    constexpr std::uint32_t none = corvinex::inspect::DirectoryRecord::none;
    const std::span<const Directory> all = file.directories();
    // Lists of children; the walk tells a directory's children in the order of its pointers.
    std::vector<std::uint32_t> firstChild(all.size(), none);
    std::vector<std::uint32_t> nextSibling(all.size(), none);
    std::uint32_t first = none;
    for (std::size_t i = all.size(); i-- > 0;) {
        const std::uint32_t parent = all[i].record().parent;
        std::uint32_t& head = parent == none ? first : firstChild[parent];
        nextSibling[i] = head;
        head = static_cast<std::uint32_t>(i);
    }
    std::vector<std::uint32_t> order;
    order.reserve(all.size());
    std::vector<std::uint32_t> left;  // the next of each level that is begun
    left.push_back(first);
    while (!left.empty()) {
        const std::uint32_t next = left.back();
        if (next == none) {
            left.pop_back();
            continue;
        }
        order.push_back(next);
        left.back() = nextSibling[next];
        left.push_back(firstChild[next]);
    }
    return order;
}

}  // namespace tool
