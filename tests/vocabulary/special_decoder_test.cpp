#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "directory/ifd_type.h"
#include "tag/tiff_tag.h"
#include "tests/support/scoped_locale.h"
#include "tests/support/single_directory.h"

// Tags whose values become another number or a text.

namespace {

using namespace test;
using corvinex::IFDtype_t_;
using corvinex::TiffTag;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr std::uint64_t notANumber = 0xFFF8000000000000;

/// A field of a main directory and of an EXIF directory, which must agree.
std::vector<double> numbersOf(const Field& field, const char* name) {
    const auto main = readDirectory({field}).numbers(name);
    const Result exif = readSubDirectory(exifPointer, {field});
    const auto nested = test::numbersOf(fieldOf(exif.value(exifPointer.field), name));
    EXPECT_EQ(main.size(), nested.size());
    for (std::size_t i = 0; i < main.size(); ++i) {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(main[i]), std::bit_cast<std::uint64_t>(nested[i]));
    }
    return main;
}

std::string xmpOf(const Field& field) {
    const ScopedLocale utf8("C.UTF-8");
    const std::string main = readDirectory({field}).text("XMP");
    const Result exif = readSubDirectory(exifPointer, {field});
    EXPECT_EQ(textOf(fieldOf(exif.value(exifPointer.field), "XMP")), main);
    return main;
}

TEST(GrayResponseUnit, BecomesItsScale) {
    constexpr double scales[] = {0.1, 0.01, 0.001, 0.0001, 0.00001};
    for (std::uint64_t unit = 1; unit <= 5; ++unit) {
        EXPECT_EQ(numbersOf(number(290, SHORT, unit), "GrayResponseUnit"),
                  (std::vector<double>{scales[unit - 1]}));
    }
}

TEST(GrayResponseUnit, StaysTheNumberThatHasNoScale) {
    for (const std::uint64_t unit : {0U, 6U, 65535U}) {
        EXPECT_EQ(numbersOf(number(290, SHORT, unit), "GrayResponseUnit"),
                  (std::vector<double>{static_cast<double>(unit)}));
    }
}

TEST(GrayResponseUnit, IsLookedUpWithoutTruncation) {
    EXPECT_EQ(numbersOf(doubles(290, {3.5}), "GrayResponseUnit"), (std::vector<double>{3.5}));
    EXPECT_EQ(numbersOf(doubles(290, {3.0}), "GrayResponseUnit"), (std::vector<double>{0.001}));
    EXPECT_EQ(numbersOf(rationals(290, RATIONAL, {{6, 2}}), "GrayResponseUnit"),
              (std::vector<double>{0.001}));
}

TEST(GrayResponseUnit, OnlyTheFirstValueIsReplaced) {
    EXPECT_EQ(numbersOf(shorts(290, {3, 3, 1}), "GrayResponseUnit"),
              (std::vector<double>{0.001, 3, 1}));
    EXPECT_EQ(numbersOf(shorts(290, {6, 3}), "GrayResponseUnit"), (std::vector<double>{6, 3}));
}

TEST(GrayResponseUnit, StaysATextWhenItIsOne) {
    EXPECT_EQ(readDirectory({ascii(290, "3")}).text("GrayResponseUnit"), "3");
}

TEST(GrayResponseUnit, IsNotScaledInGpsAndInteroperabilityDirectories) {
    for (const PointerTag& pointer : {gpsPointer, interopPointer}) {
        const Result result = readSubDirectory(pointer, {number(290, SHORT, 3)});
        const zxArray& records = fieldOf(result.value(pointer.field), "UnknownTags");
        EXPECT_EQ(numberOf(fieldOf(records, "Value")), 3);
    }
}

TEST(Xmp, ThePacketsBytesBecomeTheText) {
    const std::string packet = "<x:xmpmeta>\xC3\xA9</x:xmpmeta>";
    Field field = ascii(700, packet);
    field.type = BYTE;
    EXPECT_EQ(xmpOf(field), packet);
    field.type = UNDEFINED;
    EXPECT_EQ(xmpOf(field), packet);
}

TEST(Xmp, TheLowEightBitsOfAValueAreTheCharacter) {
    EXPECT_EQ(xmpOf(shorts(700, {0x141, 0x042})), "AB");
    EXPECT_EQ(xmpOf(longs(700, {0xFF41})), "A");
    EXPECT_EQ(xmpOf(numbers(700, SSHORT, {0xFF41})), "A");
}

TEST(Xmp, AFractionIsTruncatedTowardZero) {
    EXPECT_EQ(xmpOf(floats(700, {65.9F, 66.1F})), "AB");
    // -190.5 becomes -190, whose low 8 bits are 0x42.
    EXPECT_EQ(xmpOf(floats(700, {-190.5F})), "B");
}

TEST(Xmp, ValuesAreHeldAtTheLimitsOfThirtyTwoBits) {
    // The largest number ends in 0xFF, which is no UTF-8; the smallest in 0, which is trimmed.
    EXPECT_EQ(xmpOf(doubles(700, {65, std::ldexp(1.0, 32) + 66})), "A\uFFFD");
    EXPECT_EQ(xmpOf(doubles(700, {65, infinity})), "A\uFFFD");
    EXPECT_EQ(xmpOf(doubles(700, {65, -std::ldexp(1.0, 40) - 66})), "A");
    EXPECT_EQ(xmpOf(doubles(700, {65, -infinity})), "A");
    EXPECT_EQ(xmpOf(number(700, LONG, 0x80000041)), "\uFFFD");
}

TEST(Xmp, NotANumberIsAZeroCharacter) {
    EXPECT_EQ(xmpOf(doubles(700, {65, std::nan(""), 66})), std::string("A\0B", 3));
}

TEST(Xmp, ZeroCharactersAtTheEndAreTrimmed) {
    EXPECT_EQ(xmpOf(numbers(700, BYTE, {'A', 0, 'B', 0, 0})), std::string("A\0B", 3));
}

TEST(Xmp, APacketOfZerosIsAnEmptyText) {
    const Result result = readDirectory({numbers(700, BYTE, {0, 0, 0})});
    EXPECT_EQ(host::classOf(result.value("XMP")), host::ValueClass::Char);
    EXPECT_EQ(host::sizeOf(result.value("XMP")), (host::Size{0, 0}));
}

TEST(Xmp, ATextStaysAsItIs) {
    EXPECT_EQ(xmpOf(text(700, "packet")), "packet");
}

TEST(IccProfile, BecomesItsValueOffset) {
    for (const Container& container : containers) {
        SCOPED_TRACE(container);
        TiffBuilder builder(container.order, container.layout);
        const Numbers profile(100, 9);
        builder.add({numbers(34675, UNDEFINED, profile)});
        const auto offset = static_cast<double>(builder.valueOf(0, 0));
        EXPECT_EQ(read(builder.bytes()).numbers("ICCProfileOffset"), (std::vector<double>{offset}));
    }
}

TEST(IccProfile, TheOffsetIsRelativeToTheHeader) {
    TiffBuilder builder;
    builder.add({longs(34675, {1, 2, 3})});
    EXPECT_EQ(readAsJpeg(builder.bytes()).number("ICCProfileOffset"),
              static_cast<double>(builder.valueOf(0, 0)));
}

TEST(IccProfile, InsideTheEntryHasOffsetZero) {
    EXPECT_EQ(numbersOf(numbers(34675, UNDEFINED, {1, 2, 3, 4}), "ICCProfileOffset"),
              (std::vector<double>{0}));
}

TEST(IccProfile, IsNotTurnedIntoAnOffsetInAGpsDirectory) {
    const Result result = readSubDirectory(gpsPointer, {numbers(34675, BYTE, {1, 2})});
    const zxArray& records = fieldOf(result.value(gpsPointer.field), "UnknownTags");
    EXPECT_EQ(test::numbersOf(fieldOf(records, "Value")), (std::vector<double>{1, 2}));
}

TEST(DepthFar, IsInfinityForOneOverZero) {
    for (const Container& container : containers) {
        const Result result = readDirectory({rationals(51179, RATIONAL, {{1, 0}})}, container);
        EXPECT_EQ(result.numbers("DepthFar"), (std::vector<double>{infinity}));
        EXPECT_EQ(result.warnings(), Reports{});
    }
    EXPECT_EQ(numbersOf(rationals(51179, RATIONAL, {{1, 0}}), "DepthFar"),
              (std::vector<double>{infinity}));
}

TEST(DepthFar, IsNotANumberForOtherZeroDenominators) {
    for (const std::int64_t numerator : {0, 2}) {
        const auto values = numbersOf(rationals(51179, RATIONAL, {{numerator, 0}}), "DepthFar");
        ASSERT_EQ(values.size(), 1U);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(values[0]), notANumber);
    }
}

TEST(DepthFar, IsTheQuotientOtherwise) {
    EXPECT_EQ(numbersOf(rationals(51179, RATIONAL, {{1, 4}}), "DepthFar"),
              (std::vector<double>{0.25}));
}

TEST(DepthFar, TheLastOfSeveralValuesDecides) {
    EXPECT_EQ(numbersOf(rationals(51179, RATIONAL, {{3, 2}, {1, 0}}), "DepthFar"),
              (std::vector<double>{infinity}));
    const auto values = numbersOf(rationals(51179, RATIONAL, {{1, 0}, {3, 2}}), "DepthFar");
    ASSERT_EQ(values.size(), 2U);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(values[0]), notANumber);
    EXPECT_EQ(values[1], 1.5);
}

TEST(DepthFar, IsNotInfinityForASignedOneOverZero) {
    const Result result = readDirectory({rationals(51179, SRATIONAL, {{1, 0}})});
    EXPECT_EQ(std::bit_cast<std::uint64_t>(result.number("DepthFar")), notANumber);
    EXPECT_EQ(result.warnings(), Reports{report("badTagValueDivisionByZero", {"DepthFar"})});
}

TEST(DepthFar, IsNotInfinityForAPlainNumber) {
    EXPECT_EQ(numbersOf(number(51179, LONG, 1), "DepthFar"), (std::vector<double>{1}));
}

TEST(DepthFar, IsNotInfinityInAGpsDirectory) {
    const Result result = readSubDirectory(gpsPointer, {rationals(51179, RATIONAL, {{1, 0}})});
    const zxArray& records = fieldOf(result.value(gpsPointer.field), "UnknownTags");
    EXPECT_TRUE(std::isnan(numberOf(fieldOf(records, "Value"))));
}

TEST(DepthNear, StaysNotANumberForOneOverZero) {
    const auto values = numbersOf(rationals(51178, RATIONAL, {{1, 0}}), "DepthNear");
    ASSERT_EQ(values.size(), 1U);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(values[0]), notANumber);
}

TEST(ImageDescription, OfNumbersStaysAsItIs) {
    EXPECT_EQ(numbersOf(numbers(270, BYTE, {65, 66, 0}), "ImageDescription"),
              (std::vector<double>{65, 66, 0}));
}

TEST(ImageDescription, OfTextKeepsItsLastCharacter) {
    EXPECT_EQ(readDirectory({ascii(270, "abc")}).text("ImageDescription"), "abc");
    EXPECT_EQ(readDirectory({text(270, "abcd")}).text("ImageDescription"), "abcd");
}

}  // namespace
