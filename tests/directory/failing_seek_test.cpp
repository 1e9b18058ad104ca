#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <memory>
#include <string>

#include "host/interface/platform.h"
#include "host/platform/unicode.h"
#include "tests/directory/tiff_variants.h"

// Seeks that fail although the file reaches that far. The host's way to open a file is replaced in
// this program by one whose streams refuse to move to one position.

namespace {

constexpr std::uint64_t nowhere = std::numeric_limits<std::uint64_t>::max();
std::uint64_t refusedPosition = nowhere;

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

std::FILE* fileOf(void* cookie) {
    return static_cast<File*>(cookie)->get();
}

ssize_t readCookie(void* cookie, char* bytes, std::size_t count) {
    return static_cast<ssize_t>(std::fread(bytes, 1, count, fileOf(cookie)));
}

int seekCookie(void* cookie, off64_t* offset, int whence) {
    if (whence == SEEK_SET && static_cast<std::uint64_t>(*offset) == refusedPosition) {
        return -1;
    }
    if (std::fseek(fileOf(cookie), *offset, whence) != 0) {
        return -1;
    }
    *offset = std::ftell(fileOf(cookie));
    return 0;
}

int closeCookie(void* cookie) {
    delete static_cast<File*>(cookie);
    return 0;
}

}  // namespace

namespace fl::filesystem {

std::FILE* fopen(const std::u16string& path, const std::string& mode) {
    auto file =
        std::make_unique<File>(std::fopen(host::utf8FromUtf16(path).value().c_str(), mode.c_str()));
    if (*file == nullptr || refusedPosition == nowhere) {
        return file->release();
    }
    std::setvbuf(file->get(), nullptr, _IONBF, 0);
    std::FILE* stream =
        fopencookie(file.get(), mode.c_str(), {readCookie, nullptr, seekCookie, closeCookie});
    if (stream != nullptr) {
        static_cast<void>(file.release());
        std::setvbuf(stream, nullptr, _IONBF, 0);
    }
    return stream;
}

}  // namespace fl::filesystem

namespace test {
namespace {

/// Refuses one position while it lives.
class RefusedPosition {
  public:
    explicit RefusedPosition(std::uint64_t position) { refusedPosition = position; }
    ~RefusedPosition() { refusedPosition = nowhere; }
    RefusedPosition(const RefusedPosition&) = delete;
    RefusedPosition& operator=(const RefusedPosition&) = delete;
};

/// A value so long that what lies beyond it is not reached by reading on.
Field farApart() {
    return text(315, std::string(500, 'x'));
}

class FailingSeek : public EveryTiff {};
CORVINEX_FOR_EVERY_TIFF(FailingSeek);

TEST_P(FailingSeek, ToTheNextOffsetFieldEndsTheChain) {
    TiffBuilder builder = newBuilder();
    builder.add({mark(1), farApart()});
    builder.add({mark(2), farApart()});
    builder.add({mark(3)});
    builder.chain({0, 1, 2});
    const RefusedPosition refused(builder.nextFieldOf(1));
    const Result result = read(builder.bytes());
    EXPECT_EQ(marks(result), (Marks{1, 2}));
    EXPECT_EQ(result.warnings(), Reports{report("badNextIfdPointerSeek")});
}

TEST_P(FailingSeek, ToTheNextDirectoryEndsTheChain) {
    TiffBuilder builder = newBuilder();
    builder.add({mark(1)});
    builder.add({mark(2), farApart()});
    builder.add({mark(3)});
    builder.chain({0, 1, 2});
    const RefusedPosition refused(builder.positionOf(2));
    const Result result = read(builder.bytes());
    EXPECT_EQ(marks(result), (Marks{1, 2}));
    EXPECT_EQ(result.warnings(), Reports{report("badNextIfdPointerSeek")});
}

TEST_P(FailingSeek, IsWarnedOfForEachSet) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(330, LONG, {1}), mark(1)});
    builder.add({mark(2), farApart()});
    builder.add({mark(3)});
    builder.nextDirectory(0, 2).nextDirectory(1, 2);
    const RefusedPosition refused(builder.positionOf(2));
    const host::Report warning = report("badNextIfdPointerSeek");
    EXPECT_EQ(read(builder.bytes()).warnings(), (Reports{warning, warning}));
}

TEST_P(FailingSeek, DoesNotHarmASetThatFollowsNoChain) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34665, LONG, {1}), mark(1)});
    builder.add({farApart()});
    const RefusedPosition refused(builder.nextFieldOf(1));
    const Result result = read(builder.bytes());
    EXPECT_TRUE(result.warnings().empty());
    EXPECT_TRUE(result.isSet("DigitalCamera"));
}

TEST_P(FailingSeek, ToASubDirectoryDropsItsPointer) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34665, LONG, {1}), pointers(34853, LONG, {1}), mark(1), farApart()});
    builder.add({text(1, "N")});
    const RefusedPosition refused(builder.positionOf(1));
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.warnings(), Reports{report("badSubIfdSeek", {builder.positionOf(1)})});
    EXPECT_FALSE(result.hasField("DigitalCamera"));
    EXPECT_FALSE(result.hasField("GPSInfo"));
    EXPECT_EQ(marks(result), Marks{1});
}

TEST_P(FailingSeek, ToAValueDropsItsEntry) {
    TiffBuilder builder = newBuilder();
    // The value lies in the midst of a directory that nothing leads to.
    TiffBuilder plan = newBuilder();
    plan.add({mark(1), at(305, ASCII, 20, 0), text(306, "d")});
    plan.add({farApart()});
    const std::uint64_t position = plan.valueOf(1, 0) + 200;
    builder.add({mark(1), at(305, ASCII, 20, position), text(306, "d")});
    builder.add({farApart()});
    EXPECT_EQ(read(builder.bytes()).text("Software"), std::string(20, 'x'));
    const RefusedPosition refused(position);
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.warnings(), Reports{report("badTagDataOffsetSeek", {305})});
    EXPECT_FALSE(result.hasField("Software"));
    EXPECT_EQ(result.text("DateTime"), "d");
}

TEST_P(FailingSeek, ToTheFirstDirectoryIsFatal) {
    TiffBuilder builder = newBuilder();
    builder.add({farApart()});
    builder.add({mark(1)});
    builder.chain({1});
    const RefusedPosition refused(builder.positionOf(1));
    EXPECT_EQ(read(builder.bytes()).error(), report("badTiffHeaderIfdOffset"));
}

}  // namespace
}  // namespace test
