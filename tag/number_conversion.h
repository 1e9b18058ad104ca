#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace corvinex {

/// Makes numbers.size() numbers of value bytes in host byte order. The type is an integer or
/// floating one (TIFF 6.0, BigTIFF); bytes holds that many elements of it, or std::out_of_range is
/// raised. SLONG8 is read at a 4-byte stride over its 8-byte elements. That is kept on purpose:
/// whoever compares the numbers of SLONG8 arrays with those of earlier results would notice a
/// change.
void convertNumbers(std::uint32_t type, std::span<const unsigned char> bytes,
                    std::span<double> numbers);

/// Bytes from one number to the next, as convertNumbers takes them.
[[nodiscard]] std::size_t getNumberStride(std::uint32_t type) noexcept;

}  // namespace corvinex
