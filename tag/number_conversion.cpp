#include "tag/number_conversion.h"

#include <tiff.h>

#include <stdexcept>

#include "format/byte_order.h"
#include "tag/tiff_type.h"

namespace corvinex {

namespace {

template <class Element>
void convert(std::span<const unsigned char> bytes, std::span<double> numbers) {
    if (bytes.size() / sizeof(Element) < numbers.size()) {
        throw std::out_of_range("a value has fewer bytes than its numbers need");
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        numbers[i] = static_cast<double>(loadNative<Element>(bytes, i * sizeof(Element)));
    }
}

}  // namespace

void convertNumbers(std::uint32_t type, std::span<const unsigned char> bytes,
                    std::span<double> numbers) {
    switch (type) {
        case TIFF_SBYTE:
            return convert<std::int8_t>(bytes, numbers);
        case TIFF_SHORT:
            return convert<std::uint16_t>(bytes, numbers);
        case TIFF_SSHORT:
            return convert<std::int16_t>(bytes, numbers);
        case TIFF_LONG:
            return convert<std::uint32_t>(bytes, numbers);
        case TIFF_SLONG:
        case TIFF_SLONG8:
            return convert<std::int32_t>(bytes, numbers);
        case TIFF_LONG8:
            return convert<std::uint64_t>(bytes, numbers);
        case TIFF_FLOAT:
            return convert<float>(bytes, numbers);
        case TIFF_DOUBLE:
            return convert<double>(bytes, numbers);
        default:  // BYTE and UNDEFINED
            return convert<std::uint8_t>(bytes, numbers);
    }
}

std::size_t getNumberStride(std::uint32_t type) noexcept {
    return type == TIFF_SLONG8 ? sizeof(std::int32_t) : getElementWidth(type);
}

}  // namespace corvinex
