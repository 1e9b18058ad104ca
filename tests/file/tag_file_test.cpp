#include "file/tag_file.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "entry/reports/warnings.h"
#include "host/messages/reports.h"
#include "host/values/value.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

namespace {

using corvinex::FileFormat;
using corvinex::TagFile;
using test::Bytes;
using test::Layout;
using test::Order;

constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();

Bytes onePage(Order order, Layout layout) {
    test::TiffBuilder builder(order, layout);
    builder.add({test::text(305, "one page of text")});
    return builder.bytes();
}

/// A file whose header has been read, and that is long enough to seek in.
struct Read {
    test::TemporaryFile file;
    TagFile reader;

    Read(Order order, Layout layout, const Bytes& end)
        : file(joined(onePage(order, layout), end)), reader(file.name(), 0, 0, 0) {
        reader.readThroughTagFile();
        EXPECT_TRUE(reader.getStream().seek(reader.getFileSize() - end.size()));
    }

    static Bytes joined(Bytes front, const Bytes& end) {
        front.insert(front.end(), end.begin(), end.end());
        return front;
    }
};

}  // namespace

TEST(TagFile, IsNotCopied) {
    static_assert(!std::is_copy_constructible_v<TagFile>);
    static_assert(!std::is_copy_assignable_v<TagFile>);
    EXPECT_FALSE(std::is_copy_constructible_v<TagFile>);
}

TEST(TagFile, KnowsItsKindAndLayoutOnceConstructed) {
    const struct {
        Bytes bytes;
        FileFormat format;
        std::array<std::uint64_t, 4> sizes;  // entry, entry count, offset, value field position
        std::size_t fields;
    } kinds[] = {
        {{0xFF, 0xD8}, FileFormat::JPEG, {12, 2, 4, 8}, 10},
        {onePage(Order::Big, Layout::Classic), FileFormat::ClassicTIFF, {12, 2, 4, 8}, 35},
        {onePage(Order::Big, Layout::Big), FileFormat::BigTIFF, {20, 8, 8, 12}, 35},
    };
    for (const auto& kind : kinds) {
        const test::TemporaryFile file(kind.bytes);
        TagFile reader(file.name(), 1, 2, 3);
        EXPECT_EQ(reader.getFileFormat(), kind.format);
        EXPECT_EQ(reader.isJpegFile(), kind.format == FileFormat::JPEG);
        EXPECT_EQ((std::array{reader.getEntrySize(), reader.getEntryCountSize(),
                              reader.getOffsetSize(), reader.getValueFieldPosition()}),
                  kind.sizes);
        EXPECT_EQ(reader.getDefaultFields().size(), kind.fields);
        EXPECT_EQ(reader.getFilename(), file.name());
        EXPECT_EQ(reader.getFileSize(), kind.bytes.size());
        EXPECT_EQ(reader.getMaxIfdsPerSet(), 3U);
        EXPECT_TRUE(reader.getStream().isOpen());
        EXPECT_EQ(reader.getStream().tell(), 0U);
    }
}

TEST(TagFile, GivesAnEmptyResultBeforeItWasRead) {
    const test::TemporaryFile file(onePage(Order::Little, Layout::Classic));
    TagFile reader(file.name(), 0, 0, 0);
    const corvinex::HostArray output = reader.repackageIfds();
    EXPECT_EQ(host::classOf(*output), host::ValueClass::Double);
    EXPECT_EQ(host::sizeOf(*output), (host::Size{0, 0}));
}

TEST(TagFile, ClosesItsFileAlsoWhenTheReadFails) {
    const std::size_t before = test::openFiles();
    const test::TemporaryFile sound(onePage(Order::Little, Layout::Classic));
    const test::TemporaryFile broken({'I', 'I', 42, 0});
    {
        TagFile reader(sound.name(), 0, 0, 0);
        EXPECT_EQ(test::openFiles(), before + 1);
        reader.readThroughTagFile();
    }
    EXPECT_EQ(test::openFiles(), before);
    {
        TagFile reader(broken.name(), 0, 0, 0);
        EXPECT_THROW(reader.readThroughTagFile(), host::Error);
    }
    EXPECT_EQ(test::openFiles(), before);
    EXPECT_THROW(TagFile(u"/no/such/file", 0, 0, 0), host::Error);
    EXPECT_EQ(test::openFiles(), before);
}

TEST(TagFile, SwapsBytesOfBigEndianFilesOnly) {
    for (const Layout layout : {Layout::Classic, Layout::Big}) {
        EXPECT_FALSE(Read(Order::Little, layout, {}).reader.getSwapBytes());
        EXPECT_TRUE(Read(Order::Big, layout, {}).reader.getSwapBytes());
    }
}

TEST(TagFile, KeepsTheFirstFourHeaderBytesAsStored) {
    using Signature = std::array<unsigned char, 4>;
    EXPECT_EQ(Read(Order::Little, Layout::Classic, {}).reader.getHeaderSignature(),
              (Signature{'I', 'I', 42, 0}));
    EXPECT_EQ(Read(Order::Big, Layout::Big, {}).reader.getHeaderSignature(),
              (Signature{'M', 'M', 0, 43}));
}

TEST(TagFile, TakesTheHeadersPositionAsItsBase) {
    const test::JpegWithExif jpeg = test::jpegWithExif(onePage(Order::Big, Layout::Classic));
    const test::TemporaryFile file(jpeg.bytes);
    TagFile reader(file.name(), jpeg.headerPosition, 0, 0);
    reader.readThroughTagFile();
    EXPECT_EQ(reader.getBaseOffset(), jpeg.headerPosition);
}

TEST(PrimitiveReaders, TakeTheWidthsAndTheByteOrderOfTheFile) {
    const Bytes end{1, 2, 3, 4, 5, 6, 7, 8};
    const struct {
        Order order;
        Layout layout;
        unsigned long long count;
        unsigned long long offset;
        std::uint64_t countWidth;
    } kinds[] = {
        {Order::Little, Layout::Classic, 0x0201, 0x04030201, 2},
        {Order::Big, Layout::Classic, 0x0102, 0x01020304, 2},
        {Order::Little, Layout::Big, 0x0807060504030201, 0x0807060504030201, 8},
        {Order::Big, Layout::Big, 0x0102030405060708, 0x0102030405060708, 8},
    };
    for (const auto& kind : kinds) {
        Read read(kind.order, kind.layout, end);
        const std::uint64_t position = read.reader.getStream().tell();
        unsigned long long value = 0;
        EXPECT_EQ(read.reader.freadNumDirectoryEntries(&value), 1U);
        EXPECT_EQ(value, kind.count);
        EXPECT_EQ(read.reader.getStream().tell(), position + kind.countWidth);
        ASSERT_TRUE(read.reader.getStream().seek(position));
        EXPECT_EQ(read.reader.freadNextIfdOffset(&value), 1U);
        EXPECT_EQ(value, kind.offset);
    }
}

TEST(PrimitiveReaders, CountAReadThatGetsSomeBytesAs0Items) {
    for (const Layout layout : {Layout::Classic, Layout::Big}) {
        const std::size_t countWidth = layout == Layout::Big ? 8 : 2;
        const std::size_t offsetWidth = layout == Layout::Big ? 8 : 4;
        for (std::size_t length = 0; length < offsetWidth; ++length) {
            Read read(Order::Little, layout, Bytes(length, 7));
            const std::uint64_t position = read.reader.getStream().tell();
            unsigned long long value = 99;
            EXPECT_EQ(read.reader.freadNextIfdOffset(&value), 0U) << length;
            EXPECT_EQ(value, 99U);
            ASSERT_TRUE(read.reader.getStream().seek(position));
            const bool fits = length >= countWidth;
            EXPECT_EQ(read.reader.freadNumDirectoryEntries(&value), fits ? 1U : 0U) << length;
            EXPECT_EQ(value, fits ? 0x0707U : 99U);
        }
    }
}

TEST(PrimitiveReaders, TakeCountAndValueFieldsFromAnEntryInMemory) {
    const struct {
        Order order;
        Layout layout;
    } kinds[] = {{Order::Little, Layout::Classic},
                 {Order::Big, Layout::Classic},
                 {Order::Little, Layout::Big},
                 {Order::Big, Layout::Big}};
    for (const auto& kind : kinds) {
        const bool isBig = kind.layout == Layout::Big;
        const std::uint64_t count = isBig ? greatest - 1 : 0xFFFFFFFE;
        const std::uint64_t offset = isBig ? 0x1122334455667788 : 0x11223344;
        test::ByteWriter entry(kind.order);
        entry.number(0xAAAA, 2).number(0xBBBB, 2);
        entry.number(count, isBig ? 8 : 4).number(offset, isBig ? 8 : 4);
        const Read read(kind.order, kind.layout, {});
        EXPECT_EQ(read.reader.readTagNumComponents(entry.bytes()), count);
        EXPECT_EQ(read.reader.readTagDataOffset(entry.bytes()), offset);
    }
}

TEST(IssuedWarnings, AreIssuedOnceForEachKeyAndFile) {
    const test::TemporaryFile file(onePage(Order::Little, Layout::Classic));
    std::vector<host::Report> issued;
    const host::ScopedWarningSink sink(
        [&issued](const host::Report& warning) { issued.push_back(warning); });
    const auto message = [](std::uint64_t position) {
        return corvinex::warnings::badSubIfdSeek(position);
    };
    TagFile first(file.name(), 0, 0, 0);
    first.warnOncePerFile("a", message(1));
    first.warnOncePerFile("a", message(2));
    first.warnOncePerFile("b", message(3));
    TagFile second(file.name(), 0, 0, 0);
    second.warnOncePerFile("a", message(4));
    EXPECT_EQ(issued,
              (std::vector{test::report("badSubIfdSeek", {1U}), test::report("badSubIfdSeek", {3U}),
                           test::report("badSubIfdSeek", {4U})}));
}
