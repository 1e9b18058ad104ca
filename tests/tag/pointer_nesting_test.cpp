#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "directory/ifd_tree.h"
#include "directory/pointer_guard.h"
#include "entry/reports/internal_errors.h"
#include "tests/support/single_directory.h"
#include "tests/tag/tag_bench.h"

// Which pointers are followed from where, and which are refused.

namespace {

using namespace test;
using corvinex::IFDtype_t_;
using corvinex::PointerGuard;

constexpr PointerTag subIfds{330, "SubIFDs"};
constexpr PointerTag allPointers[] = {subIfds, exifPointer, gpsPointer, interopPointer};

host::Report refused(std::uint64_t tag, const char* word) {
    return report("illegallyNestedIFD", {tag, word});
}

/// A directory of the result reached by one pointer.
const zxArray& behind(const zxArray& directory, const PointerTag& pointer) {
    const zxArray& value = fieldOf(directory, pointer.field);
    return pointer.number == subIfds.number ? *host::cellAt(value, 0) : value;
}

/// Main directory, outer pointer, directory with an inner pointer and an unnamed tag, innermost
/// directory.
Bytes nested(const PointerTag& outer, const PointerTag& inner, const Container& container = {}) {
    TiffBuilder builder(container.order, container.layout);
    builder.add({pointers(outer.number, LONG, {1})});
    builder.add({pointers(inner.number, LONG, {2}), number(60001, SHORT, 1)});
    builder.add({number(60002, SHORT, 2)});
    return builder.bytes();
}

TEST(PointerNesting, EveryPointerMayStandInMainDirectoriesAndThoseOfSubIfds) {
    for (const PointerTag& inner : allPointers) {
        for (const Container& container : containers) {
            SCOPED_TRACE(inner.field);
            const Result result = read(nested(subIfds, inner, container));
            EXPECT_EQ(result.warnings(), Reports{});
            const zxArray& innermost = behind(behind(result.output(), subIfds), inner);
            EXPECT_EQ(numberOf(fieldOf(fieldOf(innermost, "UnknownTags"), "ID")), 60002);
        }
    }
}

TEST(PointerNesting, EveryPointerMayStandInAnExifDirectory) {
    for (const PointerTag& inner : allPointers) {
        SCOPED_TRACE(inner.field);
        const Result result = read(nested(exifPointer, inner));
        EXPECT_EQ(result.warnings(), Reports{});
        const zxArray& innermost = behind(behind(result.output(), exifPointer), inner);
        EXPECT_EQ(numberOf(fieldOf(fieldOf(innermost, "UnknownTags"), "ID")), 60002);
    }
}

TEST(PointerNesting, NoPointerMayStandInAGpsOrInteroperabilityDirectory) {
    for (const PointerTag& outer : {gpsPointer, interopPointer}) {
        const char* word = outer.number == gpsPointer.number ? "GPS" : "Interoperability";
        for (const PointerTag& inner : allPointers) {
            for (const Container& container : containers) {
                SCOPED_TRACE(inner.field);
                const Result result = read(nested(outer, inner, container));
                Reports expected{refused(inner.number, word)};
                EXPECT_EQ(result.warnings(), expected);
                const zxArray& directory = behind(result.output(), outer);
                EXPECT_EQ(fieldsOf(directory), (std::vector<std::string>{"UnknownTags"}));
                const zxArray& records = fieldOf(directory, "UnknownTags");
                EXPECT_EQ(host::sizeOf(records), (host::Size{1, 1}));
                EXPECT_EQ(numberOf(fieldOf(records, "ID")), 60001);
            }
        }
    }
}

TEST(PointerNesting, IsReportedOncePerTagAndDirectoryWord) {
    TiffBuilder builder;
    builder.add({pointers(34853, LONG, {1}), pointers(40965, LONG, {2})});
    builder.add({pointers(34665, LONG, {3}), pointers(34665, LONG, {3}), pointers(34853, LONG, {3}),
                 number(1, SHORT, 1)});
    builder.add({pointers(34665, LONG, {3}), number(1, SHORT, 1)});
    builder.add({number(60002, SHORT, 2)});
    EXPECT_EQ(read(builder.bytes()).warnings(),
              (Reports{refused(34665, "GPS"), refused(34853, "GPS"),
                       refused(34665, "Interoperability")}));
}

TEST(PointerNesting, OfAnEntryWithoutComponentsIsNotRefused) {
    const Result result = readSubDirectory(gpsPointer, {at(34665, LONG, 0, 0), text(1, "N")});
    EXPECT_EQ(result.warnings(), Reports{report("zeroComponentCount", {""})});
}

TEST(PointerLoops, APointerToItsOwnDirectoryIsRefused) {
    for (const PointerTag& pointer : {subIfds, exifPointer}) {
        TiffBuilder builder;
        builder.add({pointers(pointer.number, LONG, {0}), number(50714, SHORT, 3)});
        const Result result = read(builder.bytes());
        EXPECT_EQ(result.warnings(), Reports{refused(pointer.number, "Main")});
        EXPECT_FALSE(result.hasField(pointer.field));
        EXPECT_EQ(result.number("BlackLevel"), 3);
    }
}

TEST(PointerLoops, AnExifDirectoryThatPointsToItselfIsKeptWithoutThePointer) {
    for (const PointerTag& pointer : {subIfds, exifPointer}) {
        TiffBuilder builder;
        builder.add({pointers(34665, LONG, {1})});
        builder.add({pointers(pointer.number, LONG, {1}), number(33434, SHORT, 4)});
        const Result result = read(builder.bytes());
        EXPECT_EQ(result.warnings(), Reports{refused(pointer.number, "EXIF")});
        EXPECT_EQ(fieldsOf(result.value(exifPointer.field)),
                  (std::vector<std::string>{"ExposureTime"}));
    }
}

TEST(PointerLoops, APointerBackToADirectoryFurtherUpIsRefused) {
    TiffBuilder builder;
    builder.add({pointers(330, LONG, {1})});
    builder.add({pointers(34665, LONG, {2}), number(50714, SHORT, 3)});
    builder.add({pointers(330, LONG, {0}), number(33434, SHORT, 4)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.warnings(), Reports{refused(330, "EXIF")});
    const zxArray& exif = behind(behind(result.output(), subIfds), exifPointer);
    EXPECT_EQ(numberOf(fieldOf(exif, "ExposureTime")), 4);
}

TEST(PointerLoops, AGpsPointerToTheDirectoryThatHoldsItIsFollowed) {
    // It reads its holder as a GPS directory, in which pointers are illegal.
    TiffBuilder builder;
    builder.add({pointers(34853, LONG, {0}), number(1, SHORT, 7)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.warnings(), Reports{refused(34853, "GPS")});
    EXPECT_EQ(numberOf(fieldOf(result.value(gpsPointer.field), "GPSLatitudeRef")), 7);
}

TEST(PointerLoops, ADirectoryThatWasReadBeforeMayBePointedToAgain) {
    TiffBuilder builder;
    builder.add({pointers(34665, LONG, {2})});
    builder.add({pointers(34665, LONG, {2}), pointers(330, LONG, {3, 3})});
    builder.add({number(33434, SHORT, 4)});
    builder.add({pointers(34665, LONG, {2})});
    const Result result = read(builder.chain({0, 1}).bytes());
    EXPECT_EQ(result.warnings(), Reports{});
    EXPECT_EQ(numberOf(fieldOf(result.value(exifPointer.field, 1), "ExposureTime")), 4);
    EXPECT_EQ(host::sizeOf(result.value("SubIFDs", 1)), (host::Size{1, 2}));
}

TEST(PointerLoops, ALoopThatClosesThroughAChainEndsAtTheLargestDepth) {
    // The pointer leads to the directory before its own, whose chain leads back: no directory on
    // the way is being read when it is pointed to.
    TiffBuilder builder;
    builder.add({number(274, SHORT, 1)});
    builder.add({pointers(330, LONG, {0}), number(274, SHORT, 1)});
    const Result result = read(builder.chain({0, 1}).bytes());
    EXPECT_EQ(result.warnings(), Reports{refused(330, "Main")});
    std::size_t depth = 0;
    const zxArray* set = &result.output();
    while (hasField(*set, "SubIFDs")) {
        set = host::cellAt(fieldOf(*set, "SubIFDs", 1), 0);
        ++depth;
    }
    EXPECT_EQ(depth, 64U);
}

TEST(PointerLoops, OneRefusedOffsetDropsAllSetsOfItsTag) {
    TiffBuilder builder;
    builder.add({pointers(330, LONG, {1, 0, 2}), number(50714, SHORT, 3)});
    builder.add({number(274, SHORT, 1)});
    builder.add({at(60001, 0, 1, 0), number(274, SHORT, 1)});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.warnings(), Reports{refused(330, "Main")}) << "the third is not read";
    EXPECT_FALSE(result.hasField("SubIFDs"));
    EXPECT_EQ(result.number("BlackLevel"), 3);
}

TEST(PointerLoops, AreReportedOncePerTagAndDirectoryWord) {
    TiffBuilder builder;
    builder.add({pointers(330, LONG, {0}), pointers(330, LONG, {0}), pointers(34665, LONG, {0}),
                 number(274, SHORT, 1)});
    EXPECT_EQ(read(builder.bytes()).warnings(),
              (Reports{refused(330, "Main"), refused(34665, "Main")}));
}

/// How deep the nest of SubIFDs of a file goes, that many pointers behind each other.
std::size_t depthOf(const Result& result) {
    std::size_t depth = 0;
    const zxArray* directory = &result.output();
    while (hasField(*directory, "SubIFDs")) {
        directory = &behind(*directory, subIfds);
        ++depth;
    }
    return depth;
}

Bytes nestOf(std::size_t pointersInside) {
    TiffBuilder builder;
    for (std::size_t i = 0; i < pointersInside; ++i) {
        builder.add({pointers(330, LONG, {i + 1}), number(274, SHORT, 1)});
    }
    builder.add({number(274, SHORT, 1)});
    return builder.bytes();
}

TEST(PointerDepth, OfSixtyFourPointersIsRead) {
    const Result result = read(nestOf(64));
    EXPECT_EQ(result.warnings(), Reports{});
    EXPECT_EQ(depthOf(result), 64U);
}

TEST(PointerDepth, EndsBeforeTheSixtyFifthPointer) {
    for (const std::size_t count : {65U, 200U}) {
        const Result result = read(nestOf(count));
        EXPECT_EQ(result.warnings(), Reports{refused(330, "Main")});
        EXPECT_EQ(depthOf(result), 64U);
    }
}

TEST(PointerBudget, EndsRepeatedReadingOfOneLargeDirectory) {
    // Every reading of the directory counts 65535 entries; together they may be 4 times the file's
    // size and 16 MiB.
    constexpr std::size_t entries = 65535;
    const auto bytesFor = [](std::size_t offsets) {
        TiffBuilder builder;
        builder.add(
            {pointers(330, LONG, std::vector<std::size_t>(offsets, 1)), number(274, SHORT, 1)});
        builder.add(std::vector<Field>(entries, number(256, SHORT, 1)));
        return builder.bytes();
    };
    const std::size_t size = bytesFor(26).size();
    // The last offset is followed while no more than the budget has been read.
    const std::size_t most = (4 * size + (std::size_t{16} << 20)) / (entries * 12) + 1;
    ASSERT_EQ(bytesFor(most).size() - size, 4 * (most - 26));
    const Result honest = read(bytesFor(most));
    EXPECT_EQ(honest.warnings(), Reports{});
    EXPECT_EQ(host::sizeOf(honest.value("SubIFDs")), (host::Size{1, most}));
    const Result bomb = read(bytesFor(most + 1));
    EXPECT_EQ(bomb.warnings(), Reports{refused(330, "Main")});
    EXPECT_FALSE(bomb.hasField("SubIFDs"));
}

/// Whether a guard whose budget is just spent allows one more pointer after a set was read at a
/// position.
bool isAllowedAfterReading(TagBench& bench, std::uint64_t position) {
    PointerGuard& guard = bench.file().getPointerGuard();
    const PointerGuard::FollowedPointer followed(guard);
    guard.countDirectory(PointerGuard::budgetPerFileByte * bench.file().getFileSize() +
                         PointerGuard::budgetAtLeast);
    EXPECT_TRUE(guard.isAllowed(IFDtype_t_::EXIF, 1));
    EXPECT_TRUE(bench.file().getStream().seek(position));
    EXPECT_EQ(corvinex::IFDTree(&bench.file(), IFDtype_t_::EXIF).size(), 0U);
    return guard.isAllowed(IFDtype_t_::EXIF, 1);
}

TEST(PointerBudget, IsSpentByADirectoryWithoutEntries) {
    ByteWriter writer(Order::Little);
    writer.text("II").number(42, 2).number(8, 4).number(0, 2).number(0, 4);
    TagBench bench(writer.bytes());
    EXPECT_FALSE(isAllowedAfterReading(bench, 8));
    EXPECT_EQ(bench.takeWarnings(), Reports{report("numDirectoryEntriesIsZero", {8})});
}

TEST(PointerBudget, IsSpentByADirectoryPastTheEndOfTheFile) {
    TagBench bench(tiffOf({}));
    EXPECT_FALSE(isAllowedAfterReading(bench, 5000));
    EXPECT_EQ(bench.takeWarnings(), Reports{report("numberOfDirectoryEntriesReadError", {5000})});
}

TEST(PointerNesting, InADirectoryOfNoKnownKindIsRefusedAsInAnInteroperabilityDirectory) {
    TagBench bench(tiffOf({}));
    EXPECT_THROW(
        static_cast<void>(bench.make(rawEntry(34665, LONG, 1, 8), static_cast<IFDtype_t_>(4))),
        corvinex::TiffTagsRecoverableError);
    EXPECT_EQ(bench.takeWarnings(), Reports{refused(34665, "Interoperability")});
}

TEST(PointerBudget, IsNotSpentByTheMainChain) {
    TiffBuilder builder;
    builder.add({pointers(34665, LONG, {1}), number(274, SHORT, 1)});
    builder.add({number(33434, SHORT, 4)});
    builder.nextDirectory(0, 0);
    const Result result = read(builder.bytes(), {0, 0, 50});
    EXPECT_EQ(result.warnings(), Reports{});
    EXPECT_TRUE(result.isSet(exifPointer.field, 49));
}

}  // namespace
