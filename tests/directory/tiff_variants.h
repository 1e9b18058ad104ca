#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/module_call.h"
#include "tests/support/tiff_builder.h"

// What the tests of directories share: the four variants of a TIFF, and ways to make and break one.

namespace test {

inline constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();

struct TiffVariant {
    const char* name;
    Order order;
    Layout layout;

    [[nodiscard]] std::uint64_t entrySize() const { return layout == Layout::Big ? 20 : 12; }
    [[nodiscard]] std::uint64_t countSize() const { return layout == Layout::Big ? 8 : 2; }
    [[nodiscard]] std::uint64_t offsetSize() const { return layout == Layout::Big ? 8 : 4; }
    [[nodiscard]] std::uint64_t headerSize() const { return layout == Layout::Big ? 16 : 8; }
    [[nodiscard]] TiffBuilder builder() const { return TiffBuilder(order, layout); }

    /// A copy of a file with a number overwritten.
    [[nodiscard]] Bytes with(const Bytes& file, std::uint64_t position, std::uint64_t value,
                             std::size_t width) const {
        ByteWriter writer(order);
        for (const unsigned char byte : file) {
            writer.number(byte, 1);
        }
        writer.put(position, value, width);
        return writer.bytes();
    }
};

inline void PrintTo(const TiffVariant& variant, std::ostream* stream) {
    *stream << variant.name;
}

inline constexpr TiffVariant littleClassic{"LittleClassic", Order::Little, Layout::Classic};
inline constexpr TiffVariant bigEndianClassic{"BigEndianClassic", Order::Big, Layout::Classic};
inline constexpr TiffVariant littleBigTiff{"LittleBigTiff", Order::Little, Layout::Big};
inline constexpr TiffVariant bigEndianBigTiff{"BigEndianBigTiff", Order::Big, Layout::Big};

/// Base of the tests that hold for TIFF and BigTIFF in both byte orders.
class EveryTiff : public ::testing::TestWithParam<TiffVariant> {
  protected:
    [[nodiscard]] static const TiffVariant& tiff() { return GetParam(); }
    [[nodiscard]] static TiffBuilder newBuilder() { return GetParam().builder(); }
};

inline std::string nameOfVariant(const ::testing::TestParamInfo<TiffVariant>& info) {
    return info.param.name;
}

#define CORVINEX_FOR_EVERY_TIFF(suite)                                                       \
    INSTANTIATE_TEST_SUITE_P(                                                                \
        Tiff, suite,                                                                         \
        ::testing::Values(littleClassic, bigEndianClassic, littleBigTiff, bigEndianBigTiff), \
        nameOfVariant)

/// A file cut to its first bytes.
inline Bytes firstBytes(const Bytes& file, std::uint64_t count) {
    return {file.begin(), file.begin() + static_cast<std::ptrdiff_t>(count)};
}

/// Entries of one unknown tag each.
inline std::vector<Field> unknownEntries(std::size_t count) {
    return std::vector<Field>(count, number(65000, SHORT, 1));
}

/// Tells a directory from the others: Orientation is a plain number in every main directory.
inline Field pageId(std::uint64_t value) {
    return number(274, SHORT, value);
}

inline std::vector<double> pageIds(const Result& result) {
    std::vector<double> values;
    for (std::size_t i = 0; i < result.directories(); ++i) {
        values.push_back(result.number("Orientation", i));
    }
    return values;
}

using PageIds = std::vector<double>;
using Reports = std::vector<host::Report>;
using Names = std::vector<std::string>;

/// Whether a call gave the empty result: a 0 x 0 double.
inline bool isEmptyResult(const Result& result) {
    return host::classOf(result.output()) == host::ValueClass::Double &&
           host::sizeOf(result.output()) == host::Size{0, 0};
}

}  // namespace test
