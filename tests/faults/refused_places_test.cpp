#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "tests/directory/tiff_variants.h"
#include "tests/faults/file_services.h"

// Places of a file that its stream does not reach or cannot read, although the file has them.

namespace test {
namespace {

/// Longer than any read ahead.
constexpr std::size_t farLength = 200'000;

Field farApart() {
    return text(315, std::string(farLength, 'x'));
}

/// A disk with a bad sector: reads end before a position, and fail at it.
ScopedFileServices badSectorAt(std::uint64_t position, FileEffect::Kind kind) {
    return ScopedFileServices(Buffering::None, [position, kind](const FileCall& call) {
        if (call.operation != FileOperation::Read || position < call.position ||
            position >= call.position + call.size) {
            return FileEffect{};
        }
        const auto readable = static_cast<std::size_t>(position - call.position);
        return readable == 0 ? FileEffect{kind, 0} : FileEffect{FileEffect::Short, readable};
    });
}

/// A stream that cannot be moved to a position or far into the gap before it, nor beyond.
ScopedFileServices unreachableFrom(std::uint64_t position) {
    return ScopedFileServices(Buffering::None, [position](const FileCall& call) {
        const bool isRefused =
            call.operation == FileOperation::Seek && call.position > position - farLength / 2;
        return FileEffect{isRefused ? FileEffect::Fails : FileEffect::Passes, 0};
    });
}

/// A structure in a JPEG: positions in its reports are from the file's start.
struct InJpeg {
    explicit InJpeg(const TiffBuilder& builder) : jpeg(jpegWithExif(builder.bytes())) {}
    [[nodiscard]] std::uint64_t at(std::uint64_t position) const {
        return jpeg.headerPosition + position;
    }
    [[nodiscard]] Result readIt(double skip = 0) const {
        return read(jpeg.bytes, {static_cast<double>(jpeg.headerPosition), skip, 0});
    }
    JpegWithExif jpeg;
};

class RefusedPlaces : public EveryTiff {};
CORVINEX_FOR_EVERY_TIFF(RefusedPlaces);

TEST_P(RefusedPlaces, InAValueDropItsEntryWithNameAndPosition) {
    TiffBuilder builder = newBuilder();
    builder.add({pageId(3), text(305, "a program's name"), text(306, "d")});
    const std::uint64_t position = builder.valueOf(0, 1);
    for (const auto kind : {FileEffect::Fails, FileEffect::Interrupted, FileEffect::Short}) {
        for (const std::uint64_t sector : {position, position + 1, position + 16}) {
            const ScopedFileServices services = badSectorAt(sector, kind);
            const Result result = read(builder.bytes());
            EXPECT_EQ(result.warnings(),
                      Reports{report("unableToReadTiffTag", {"Software", position})});
            EXPECT_EQ(pageIds(result), PageIds{3});
            EXPECT_FALSE(result.hasField("Software"));
            EXPECT_EQ(result.text("DateTime"), "d");
        }
    }
}

TEST_P(RefusedPlaces, InAnUnnamedValueAreReportedByItsNumberOnce) {
    TiffBuilder builder = newBuilder();
    builder.add({pageId(3), text(60000, "an unknown text"), text(60000, "another unknown text")});
    const std::uint64_t first = builder.valueOf(0, 1);
    const std::uint64_t second = builder.valueOf(0, 2);
    {
        const ScopedFileServices services = badSectorAt(second, FileEffect::Fails);
        EXPECT_EQ(read(builder.bytes()).warnings(),
                  Reports{report("unableToReadTiffTag", {"60000", second})});
    }
    const ScopedFileServices services(Buffering::None, [&](const FileCall& call) {
        const bool isValue =
            call.operation == FileOperation::Read && call.position + call.size > first;
        return FileEffect{isValue ? FileEffect::Fails : FileEffect::Passes, 0};
    });
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.warnings()[0], report("unableToReadTiffTag", {"60000", first}));
    EXPECT_EQ(
        std::ranges::count(result.warnings(), report("unableToReadTiffTag").id, &host::Report::id),
        1);
    EXPECT_FALSE(result.hasField("UnknownTags"));
}

TEST_P(RefusedPlaces, OfASkippedDirectorysSuccessorAreFatal) {
    TiffBuilder builder = newBuilder();
    builder.add({pageId(1), farApart()});
    builder.add({pageId(2)});
    builder.chain({0, 1});
    EXPECT_EQ(pageIds(read(builder.bytes(), {0, 1, 0})), PageIds{2});
    const ScopedFileServices services = unreachableFrom(builder.positionOf(1));
    EXPECT_EQ(read(builder.bytes(), {0, 1, 0}).error(), report("badTiffHeaderIfdOffset"));
}

TEST(RefusedPlacesOfAJpeg, InAValueAreReportedFromTheStartOfTheFile) {
    TiffBuilder builder;
    builder.add({pageId(3), text(305, "a program's name")});
    const InJpeg file(builder);
    const std::uint64_t position = file.at(builder.valueOf(0, 1));
    const ScopedFileServices services = badSectorAt(position, FileEffect::Fails);
    const Result result = file.readIt();
    EXPECT_EQ(result.warnings(), Reports{report("unableToReadTiffTag", {"Software", position})});
    EXPECT_EQ(pageIds(result), PageIds{3});
}

TEST(RefusedPlacesOfAJpeg, WithASubDirectoryAreReportedFromTheStartOfTheFile) {
    TiffBuilder builder;
    builder.add({pageId(3), pointers(34665, LONG, {2})});
    builder.add({farApart()});
    builder.add({text(36880, "+01:00")});
    const InJpeg file(builder);
    EXPECT_TRUE(file.readIt().isSet("DigitalCamera"));
    const std::uint64_t position = file.at(builder.positionOf(2));
    const ScopedFileServices services = unreachableFrom(position);
    const Result result = file.readIt();
    EXPECT_EQ(result.warnings(), Reports{report("badSubIfdSeek", {position})});
    EXPECT_EQ(pageIds(result), PageIds{3});
    EXPECT_FALSE(result.hasField("DigitalCamera"));
}

TEST(RefusedPlacesOfAJpeg, WithTheNextDirectoryEndTheChain) {
    TiffBuilder builder;
    builder.add({pageId(3)});
    builder.add({farApart()});
    builder.add({pageId(4)});
    builder.chain({0, 2});
    const InJpeg file(builder);
    EXPECT_EQ(pageIds(file.readIt()), (PageIds{3, 4}));
    const ScopedFileServices services = unreachableFrom(file.at(builder.positionOf(2)));
    const Result result = file.readIt();
    EXPECT_EQ(result.warnings(), Reports{report("badNextIfdPointerSeek")});
    EXPECT_EQ(pageIds(result), PageIds{3});
}

TEST(RefusedPlacesOfAJpeg, WithTheFirstDirectoryAreFatal) {
    TiffBuilder builder;
    builder.add({farApart()});
    builder.add({pageId(4)});
    builder.chain({1});
    const InJpeg file(builder);
    EXPECT_EQ(pageIds(file.readIt()), PageIds{4});
    const ScopedFileServices services = unreachableFrom(file.at(builder.positionOf(1)));
    EXPECT_EQ(file.readIt().error(), report("badTiffHeaderIfdOffset"));
}

}  // namespace
}  // namespace test
