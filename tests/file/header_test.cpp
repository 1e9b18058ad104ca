#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

// The TIFF header: where it is looked for, what it says and every way in which it can be wrong.

namespace {

using test::Bytes;
using test::ByteWriter;
using test::Layout;
using test::Order;
using test::report;
using test::Result;

using Reports = std::vector<host::Report>;

constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();

struct Structure {
    Order order;
    Layout layout;
};

const std::vector<Structure> structures{{Order::Little, Layout::Classic},
                                        {Order::Big, Layout::Classic},
                                        {Order::Little, Layout::Big},
                                        {Order::Big, Layout::Big}};

std::string nameOf(const Structure& structure) {
    return std::string(structure.order == Order::Little ? "little" : "big") + "-endian " +
           (structure.layout == Layout::Big ? "BigTIFF" : "classic TIFF");
}

/// A header alone, with the offset that it gives for the first directory.
Bytes header(const Structure& structure, std::uint64_t first) {
    test::TiffBuilder builder(structure.order, structure.layout);
    return builder.first(first).bytes();
}

/// One directory whose numbers and text lie outside the entries.
test::TiffBuilder onePage(const Structure& structure) {
    test::TiffBuilder builder(structure.order, structure.layout);
    builder.add({test::number(256, test::LONG, 70000), test::text(305, "a page of text"),
                 test::longs(273, {1, 256, 65536, 16777216})});
    return builder;
}

/// A header mark that detection accepts, and another header further on.
Bytes after(Bytes front, const Bytes& bytes) {
    front.insert(front.end(), bytes.begin(), bytes.end());
    return front;
}

}  // namespace

TEST(Header, OfBothLayoutsIsReadInBothByteOrders) {
    for (const Structure& structure : structures) {
        SCOPED_TRACE(nameOf(structure));
        const Result result = test::read(onePage(structure).bytes());
        EXPECT_EQ(result.warnings(), Reports{});
        EXPECT_EQ(result.number("Width"), 70000);
        EXPECT_EQ(result.text("Software"), "a page of text");
        EXPECT_EQ(result.numbers("StripOffsets"), (std::vector<double>{1, 256, 65536, 16777216}));
    }
}

TEST(Header, CutShortAtAnyByteCannotBeRead) {
    for (const Structure& structure : structures) {
        SCOPED_TRACE(nameOf(structure));
        const Bytes whole = header(structure, 0);
        for (std::size_t length = 4; length < whole.size(); ++length) {
            const Bytes cut(whole.begin(), whole.begin() + static_cast<long>(length));
            EXPECT_EQ(test::read(cut).error(), report("tiffHeaderReadFailure")) << length;
        }
    }
}

TEST(Header, AFirstDirectoryAtTheEndOfTheFileIsAcceptedAndFoundEmpty) {
    for (const Structure& structure : structures) {
        SCOPED_TRACE(nameOf(structure));
        const std::uint64_t size = header(structure, 0).size();
        const Result result = test::read(header(structure, size));
        EXPECT_EQ(result.warnings(), Reports{report("numberOfDirectoryEntriesReadError", {size})});
        EXPECT_EQ(host::sizeOf(result.output()), (host::Size{0, 0}));
    }
}

TEST(Header, AFirstDirectoryPastTheEndOfTheFileIsRefused) {
    for (const Structure& structure : structures) {
        SCOPED_TRACE(nameOf(structure));
        const std::uint64_t size = header(structure, 0).size();
        std::vector<std::uint64_t> offsets{size + 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
        if (structure.layout == Layout::Big) {
            offsets.insert(offsets.end(), {0x100000000, 0x7FFFFFFFFFFFFFFF, 0x8000000000000000,
                                           greatest - 1, greatest});
        }
        for (const std::uint64_t offset : offsets) {
            const Result result = test::read(header(structure, offset));
            EXPECT_EQ(result.error(), report("badTiffIfdOffset", {offset, size})) << offset;
        }
    }
}

TEST(Header, AFirstDirectoryOffsetThatPasses2To64IsReportedAtTheLimit) {
    // The sum of the header's position and the offset would wrap to a place inside the file.
    const Bytes front{'I', 'I', 43, 0};
    for (const std::uint64_t offset : {greatest, greatest - 1, greatest - 3}) {
        const Bytes bytes = after(front, header({Order::Little, Layout::Big}, offset));
        EXPECT_EQ(test::read(bytes, {4, 0, 0}).error(),
                  report("badTiffIfdOffset", {greatest, bytes.size()}));
    }
    const Bytes bytes = after(front, header({Order::Little, Layout::Big}, greatest - 4));
    EXPECT_EQ(test::read(bytes, {4, 0, 0}).error(),
              report("badTiffIfdOffset", {greatest, bytes.size()}));
}

TEST(Header, AFirstDirectoryOffsetOf0LeadsToTheHeaderItself) {
    // "II" as an entry count needs far more entries than there are.
    const Result result = test::read(header({Order::Little, Layout::Classic}, 0));
    EXPECT_EQ(result.error(), report("badIFDread", {"IFD #1"}));
}

TEST(Header, AByteOrderMarkOfNeitherOrderIsReportedWithItsBytesAndTheFile) {
    const test::TemporaryFile file({'I', 'I', 42, 0, 'I', 'M', 200, 'M', 'I', 0});
    const std::string name = file.path().string();
    EXPECT_EQ(test::readFile(file.name(), {4, 0, 0}).error(),
              report("badEndianness", {0x49U, 0x4DU, name}));
    EXPECT_EQ(test::readFile(file.name(), {7, 0, 0}).error(),
              report("badEndianness", {0x4DU, 0x49U, name}));
    EXPECT_EQ(test::readFile(file.name(), {6, 0, 0}).error(),
              report("badEndianness", {200U, 0x4DU, name}));
}

TEST(Header, OfAJpegIsNotAt0) {
    const test::TemporaryFile file(test::jpegWithExif(onePage(structures[0]).bytes()).bytes,
                                   ".jpg");
    EXPECT_EQ(test::readFile(file.name()).error(),
              report("badEndianness", {0xFFU, 0xD8U, file.path().string()}));
}

TEST(Header, AtTheEndOfTheFileOrPastItCannotBeRead) {
    const Bytes bytes = onePage(structures[0]).bytes();
    const auto size = static_cast<double>(bytes.size());
    for (const double offset : {size - 1, size, size + 1, 4294967296.0}) {
        EXPECT_EQ(test::read(bytes, {offset, 0, 0}).error(), report("tiffHeaderReadFailure"))
            << offset;
    }
}

TEST(Header, BeyondTheReachOfSeeksIsReadAtTheStart) {
    const Bytes bytes = onePage(structures[0]).bytes();
    for (const double offset : {9223372036854775808.0, 18446744073709551615.0, 1e30}) {
        EXPECT_EQ(test::read(bytes, {offset, 0, 0}).text("Software"), "a page of text") << offset;
    }
}

TEST(Header, TheVersionThereIsNotExamined) {
    Bytes bytes = onePage(structures[0]).bytes();
    bytes[2] = 99;
    const Result result = test::read(after({'I', 'I', 42, 0}, bytes), {4, 0, 0});
    EXPECT_EQ(result.numbers("FormatSignature"), (std::vector<double>{73, 73, 99, 0}));
    EXPECT_EQ(result.text("Software"), "a page of text");
}

TEST(BaseOffset, EveryOffsetCountsFromTheHeader) {
    for (const Structure& structure : structures) {
        SCOPED_TRACE(nameOf(structure));
        test::TiffBuilder builder(structure.order, structure.layout);
        builder.add({test::text(305, "the first of them"), test::pointers(330, test::LONG, {2})});
        builder.add({test::text(305, "the second of them")});
        builder.add({test::text(305, "the one below")});
        builder.chain({0, 1});
        const Bytes mark =
            structure.layout == Layout::Big ? Bytes{'M', 'M', 0, 43} : Bytes{'M', 'M', 0, 42};
        for (const std::size_t base : {4U, 5U, 64U, 1001U}) {
            Bytes front = mark;
            front.resize(base, 0xEE);
            const Result result =
                test::read(after(front, builder.bytes()), {static_cast<double>(base), 0, 0});
            EXPECT_EQ(result.warnings(), Reports{});
            EXPECT_EQ(result.directories(), 2U);
            EXPECT_EQ(result.text("Software", 0), "the first of them");
            EXPECT_EQ(result.text("Software", 1), "the second of them");
            EXPECT_EQ(result.number("Offset", 1),
                      static_cast<double>(base + builder.positionOf(1)));
            const zxArray& below = *host::cellAt(result.value("SubIFDs"), 0);
            EXPECT_EQ(test::textOf(test::fieldOf(below, "Software")), "the one below");
        }
    }
}

TEST(BaseOffset, ReportsCarryPositionsFromTheStartOfTheFile) {
    const Bytes front{'I', 'I', 42, 0, 0, 0, 0, 0, 0, 0};
    const Bytes past = after(front, header(structures[0], 9));
    EXPECT_EQ(test::read(past, {10, 0, 0}).error(), report("badTiffIfdOffset", {19U, past.size()}));
    const Bytes atEnd = after(front, header(structures[0], 8));
    EXPECT_EQ(test::read(atEnd, {10, 0, 0}).warnings(),
              Reports{report("numberOfDirectoryEntriesReadError", {18U})});
}

TEST(BaseOffset, OfAJpegIsItsHeaderAndTheFirstDirectoryFollowsIt) {
    for (const Order order : {Order::Little, Order::Big}) {
        const test::TiffBuilder builder = onePage({order, Layout::Classic});
        ASSERT_EQ(builder.positionOf(0), 8U);
        const Result result = test::readAsJpeg(builder.bytes());
        EXPECT_EQ(result.warnings(), Reports{});
        EXPECT_EQ(result.number("Width"), 70000);
        EXPECT_EQ(result.text("Software"), "a page of text");
    }
}

TEST(Limit, EndsASetThatLeadsInACircle) {
    test::TiffBuilder builder;
    builder.add({test::text(305, "round and round")});
    builder.nextDirectory(0, 0);
    for (const double limit : {1.0, 2.0, 1000.0}) {
        const Result result = test::read(builder.bytes(), {0, 0, limit});
        EXPECT_EQ(static_cast<double>(result.directories()), limit);
    }
}
