#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "file/file_format.h"
#include "tests/support/faults.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

namespace {

using corvinex::FileFormat;
using corvinex::isBigTiff;
using corvinex::isClassicTiff;
using corvinex::isJpeg;
using test::Bytes;
using test::report;

enum class Kind { Jpeg, Classic, Big };

/// The kinds whose detectors say yes.
std::vector<Kind> kindsOf(const Bytes& bytes) {
    const test::TemporaryFile file(bytes);
    std::vector<Kind> kinds;
    if (isJpeg(file.name())) {
        kinds.push_back(Kind::Jpeg);
    }
    if (isClassicTiff(file.name())) {
        kinds.push_back(Kind::Classic);
    }
    if (isBigTiff(file.name())) {
        kinds.push_back(Kind::Big);
    }
    return kinds;
}

using Kinds = std::vector<Kind>;

constexpr unsigned char classicVersion = 42;
constexpr unsigned char bigVersion = 43;

const std::vector<Bytes> tiffMarkers{
    {'I', 'I', 42, 0}, {'M', 'M', 0, 42}, {'I', 'I', 43, 0}, {'M', 'M', 0, 43}};

/// Gives up the superuser's rights, who may read every file, while it lives.
class OrdinaryUser {
  public:
    OrdinaryUser() {
        if (before_ == 0 && ::seteuid(nobody) != 0) {
            throw std::runtime_error("cannot give up the superuser's rights");
        }
    }
    ~OrdinaryUser() {
        if (::seteuid(before_) != 0) {
            std::abort();
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  private:
    static constexpr uid_t nobody = 65534;
    uid_t before_ = ::geteuid();
};

}  // namespace

TEST(FormatDetection, JpegBeginsWithItsStartMarker) {
    EXPECT_EQ(kindsOf({0xFF, 0xD8}), Kinds{Kind::Jpeg});
    EXPECT_EQ(kindsOf({0xFF, 0xD8, 0xFF, 0xE1}), Kinds{Kind::Jpeg});
    EXPECT_EQ(kindsOf({0xFF, 0xD9}), Kinds{});
    EXPECT_EQ(kindsOf({0xD8, 0xFF}), Kinds{});
    EXPECT_EQ(kindsOf({0xFE, 0xD8}), Kinds{});
}

TEST(FormatDetection, AClassicTiffHas42InEitherByteOrder) {
    EXPECT_EQ(kindsOf({'I', 'I', 42, 0}), Kinds{Kind::Classic});
    EXPECT_EQ(kindsOf({'M', 'M', 0, 42}), Kinds{Kind::Classic});
}

TEST(FormatDetection, ABigTiffHas43InEitherByteOrder) {
    EXPECT_EQ(kindsOf({'I', 'I', 43, 0}), Kinds{Kind::Big});
    EXPECT_EQ(kindsOf({'M', 'M', 0, 43}), Kinds{Kind::Big});
}

TEST(FormatDetection, TheVersionMustStandInTheFilesOwnByteOrder) {
    for (const unsigned char version : {classicVersion, bigVersion}) {
        for (const Bytes& marker : {Bytes{'I', 'I', 0, version}, Bytes{'M', 'M', version, 0}}) {
            EXPECT_EQ(kindsOf(marker), Kinds{});
            EXPECT_EQ(test::read(marker).error(), report("unsupportedFileFormat"));
        }
    }
}

TEST(FormatDetection, MixedMarkersAreRefused) {
    for (const unsigned char version : {classicVersion, bigVersion}) {
        for (const Bytes& marker : {Bytes{'M', 'I', 0, version}, Bytes{'I', 'M', version, 0},
                                    Bytes{'I', 'M', 0, version}, Bytes{'M', 'I', version, 0}}) {
            EXPECT_EQ(kindsOf(marker), Kinds{});
            EXPECT_EQ(test::read(marker).error(), report("unsupportedFileFormat"));
        }
    }
}

TEST(FormatDetection, EveryOtherValueOfEveryMarkerByteIsRefused) {
    for (const Bytes& marker : tiffMarkers) {
        for (std::size_t place = 0; place < marker.size(); ++place) {
            for (unsigned value = 0; value < 256; ++value) {
                Bytes changed = marker;
                changed[place] = static_cast<unsigned char>(value);
                const bool isMarker =
                    std::find(tiffMarkers.begin(), tiffMarkers.end(), changed) != tiffMarkers.end();
                EXPECT_EQ(kindsOf(changed).size(), isMarker ? 1U : 0U)
                    << "byte " << place << " = " << value;
            }
        }
    }
}

TEST(FormatDetection, FilesThatAreTooShortAreOfNoKind) {
    EXPECT_EQ(kindsOf({}), Kinds{});
    for (const Bytes& marker : tiffMarkers) {
        for (std::size_t length = 0; length < 4; ++length) {
            const Bytes shortened(marker.begin(), marker.begin() + static_cast<long>(length));
            EXPECT_EQ(kindsOf(shortened), Kinds{});
            EXPECT_EQ(test::read(shortened).error(), report("unsupportedFileFormat"));
        }
    }
}

TEST(FormatDetection, AFileOfOneByteIsNotAJpeg) {
    EXPECT_EQ(kindsOf({0xFF}), Kinds{});
    EXPECT_EQ(test::read({0xFF}).error(), report("unsupportedFileFormat"));
}

TEST(FormatDetection, AnEmptyFileIsUnsupported) {
    EXPECT_EQ(test::read({}).error(), report("unsupportedFileFormat"));
}

TEST(FormatDetection, ADifferentByteSizeInABigTiffHeaderDoesNotMatter) {
    for (const std::uint64_t byteSize : {0U, 4U, 8U, 9U, 65535U}) {
        for (const test::Order order : {test::Order::Little, test::Order::Big}) {
            test::TiffBuilder builder(order, test::Layout::Big);
            builder.add({test::text(305, "big")});
            test::ByteWriter writer(order);
            writer.text(order == test::Order::Little ? "II" : "MM").number(43, 2);
            writer.number(byteSize, 2).number(byteSize, 2);
            Bytes bytes = builder.bytes();
            std::copy(writer.bytes().begin(), writer.bytes().end(), bytes.begin());
            EXPECT_EQ(test::read(bytes).text("Software"), "big") << byteSize;
        }
    }
}

TEST(FormatDetection, AFileThatCannotBeOpenedIsOfNoKindAndRaisesNothing) {
    const std::u16string missing = u"/no/such/file";
    EXPECT_FALSE(isJpeg(missing));
    EXPECT_FALSE(isClassicTiff(missing));
    EXPECT_FALSE(isBigTiff(missing));
}

TEST(FormatDetection, LeavesNoFileOpen) {
    const test::TemporaryFile file({'I', 'I', 42, 0});
    const std::size_t before = test::openFiles();
    EXPECT_FALSE(isJpeg(file.name()));
    EXPECT_TRUE(isClassicTiff(file.name()));
    EXPECT_FALSE(isBigTiff(file.name()));
    EXPECT_EQ(test::openFiles(), before);
}

TEST(FormatDetection, AsksForJpegThenClassicThenBigTiff) {
    // Each detector opens the file once and the reader once more.
    const struct {
        Bytes bytes;
        std::size_t opens;
    } cases[] = {{{0xFF, 0xD8}, 2},
                 {{'I', 'I', 42, 0}, 3},
                 {{'M', 'M', 0, 43}, 4},
                 {{'G', 'I', 'F', '8'}, 3}};
    for (const auto& [bytes, opens] : cases) {
        const std::size_t before = test::callsOf(test::Operation::fopen);
        EXPECT_TRUE(test::read(bytes).failed());
        EXPECT_EQ(test::callsOf(test::Operation::fopen) - before, opens);
    }
}

TEST(FileNames, AMissingFileIsAStatFailure) {
    EXPECT_EQ(test::readFile(u"/no/such/file.tif").error(), report("statFailure"));
    EXPECT_EQ(test::readFile(u"").error(), report("statFailure"));
}

TEST(FileNames, AFileInThePlaceOfADirectoryIsAStatFailure) {
    const test::TemporaryFile file({'I', 'I', 42, 0});
    EXPECT_EQ(test::readFile(file.name() + u"/inside").error(), report("statFailure"));
}

TEST(FileNames, ADirectoryIsUnsupported) {
    const std::u16string folder = std::filesystem::temp_directory_path().u16string();
    EXPECT_EQ(test::readFile(folder).error(), report("unsupportedFileFormat"));
}

TEST(FileNames, ADeviceIsUnsupported) {
    EXPECT_EQ(test::readFile(u"/dev/null").error(), report("unsupportedFileFormat"));
    EXPECT_EQ(test::readFile(u"/dev/zero").error(), report("unsupportedFileFormat"));
}

TEST(FileNames, AFileWithoutReadPermissionIsUnsupported) {
    test::TiffBuilder builder;
    builder.add({test::text(305, "secret")});
    const test::TemporaryFile file(builder.bytes());
    ASSERT_EQ(::chmod(file.path().c_str(), 0), 0);
    static_cast<void>(test::module());  // loaded now: it may lie in a folder of root's alone
    const OrdinaryUser user;
    if (::access(file.path().c_str(), F_OK) != 0) {
        GTEST_SKIP() << "an ordinary user cannot see the temporary folder";
    }
    EXPECT_EQ(test::readFile(file.name()).error(), report("unsupportedFileFormat"));
}

TEST(DirectoryLayout, OfClassicTiffServesJpegToo) {
    for (const FileFormat format : {FileFormat::JPEG, FileFormat::ClassicTIFF}) {
        const corvinex::DirectoryLayout& layout = corvinex::getDirectoryLayout(format);
        EXPECT_EQ(layout.entrySize, 12U);
        EXPECT_EQ(layout.entryCountSize, 2U);
        EXPECT_EQ(layout.offsetSize, 4U);
        EXPECT_EQ(layout.valueFieldPosition, 8U);
    }
}

TEST(DirectoryLayout, OfBigTiffHasWideFields) {
    const corvinex::DirectoryLayout& layout = corvinex::getDirectoryLayout(FileFormat::BigTIFF);
    EXPECT_EQ(layout.entrySize, 20U);
    EXPECT_EQ(layout.entryCountSize, 8U);
    EXPECT_EQ(layout.offsetSize, 8U);
    EXPECT_EQ(layout.valueFieldPosition, 12U);
}

TEST(FileFormatValues, AreThoseOfTheEnumeration) {
    EXPECT_EQ(static_cast<std::uint32_t>(FileFormat::JPEG), 0U);
    EXPECT_EQ(static_cast<std::uint32_t>(FileFormat::ClassicTIFF), 1U);
    EXPECT_EQ(static_cast<std::uint32_t>(FileFormat::BigTIFF), 2U);
    static_assert(sizeof(FileFormat) == 4);
}
