#include "format/byte_order.h"

#include <stdexcept>

namespace corvinex {

namespace {

/// The size is a template argument so that the compiler can use the machine's byte-swap
/// instruction.
template <std::size_t ElementSize>
void reverseElements(unsigned char* bytes, unsigned long count) {
    for (unsigned long i = 0; i < count; ++i, bytes += ElementSize) {
        std::array<unsigned char, ElementSize> element{};
        std::copy_n(bytes, ElementSize, element.begin());
        std::reverse_copy(element.begin(), element.end(), bytes);
    }
}

}  // namespace

void refuseOutside() {
    throw std::out_of_range("value outside its buffer");
}

void raw2native(void* data, unsigned long elementSize, unsigned long count, bool swap) {
    if (count == 0 || !swap || elementSize < 2) {
        return;
    }
    auto* bytes = static_cast<unsigned char*>(data);
    switch (elementSize) {
        case 2:
            return reverseElements<2>(bytes, count);
        case 4:
            return reverseElements<4>(bytes, count);
        case 8:
            return reverseElements<8>(bytes, count);
        default:
            for (unsigned long i = 0; i < count; ++i, bytes += elementSize) {
                std::reverse(bytes, bytes + elementSize);
            }
    }
}

}  // namespace corvinex
