#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "directory/ifd_tree.h"
#include "entry/reports/fatal_errors.h"
#include "file/tag_file.h"
#include "tests/reading/issued_warnings.h"

// What reads a file, linked without what makes host values: this program has no operation of
// arrays.

namespace {

using corvinex::IFD;
using corvinex::IFDTree;
using corvinex::IFDtype_t_;
using corvinex::TagFile;
using corvinex::TagValue;

constexpr std::uint32_t firstDirectory = 8;

/// A file of bytes, removed in the end.
class BytesOnDisk {
  public:
    explicit BytesOnDisk(const std::vector<unsigned char>& bytes)
        : path_(std::filesystem::temp_directory_path() /
                ("corvinex-reading-" + std::to_string(::getpid()) + ".tif")) {
        std::ofstream(path_, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }
    ~BytesOnDisk() { std::filesystem::remove(path_); }
    BytesOnDisk(const BytesOnDisk&) = delete;
    BytesOnDisk& operator=(const BytesOnDisk&) = delete;

    [[nodiscard]] std::u16string name() const { return path_.u16string(); }

  private:
    std::filesystem::path path_;
};

/// A little-endian TIFF of one directory: Orientation 6, Software "abc", and the unknown tag 65000
/// with two numbers.
std::vector<unsigned char> smallTiff() {
    return {'I', 'I', 42, 0,   firstDirectory,
            0,   0,   0,  // header
            3,   0,       // entries
            18,  1,   3,  0,   1,
            0,   0,   0,  6,   0,
            0,   0,  // 274 SHORT
            49,  1,   2,  0,   4,
            0,   0,   0,  'a', 'b',
            'c', 0,  // 305 ASCII
            232, 253, 3,  0,   2,
            0,   0,   0,  7,   0,
            9,   0,            // 65000 SHORT
            0,   0,   0,  0};  // next directory
}

TEST(Reading, NeedsNoHostValues) {
    const BytesOnDisk bytes(smallTiff());
    TagFile file(bytes.name(), 0, 0, 0);
    file.readThroughTagFile();
    ASSERT_TRUE(file.getStream().seek(firstDirectory));
    const IFDTree tree(&file, IFDtype_t_::Main);
    ASSERT_EQ(tree.size(), 1U);
    const IFD& ifd = tree.getIfds().front();
    std::vector<std::string> names;
    for (const TagValue& tag : ifd.getTags()) {
        names.emplace_back(tag.getName());
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Orientation", "Software"}));
    EXPECT_EQ(ifd.getTags().front().getNumericValue(0), 6);
    EXPECT_TRUE(ifd.hasUnknownTags());
    EXPECT_EQ(test::issuedWarnings(), std::vector<std::string>{});
}

TEST(Reading, ReportsAsEver) {
    std::vector<unsigned char> damaged = smallTiff();
    damaged[firstDirectory + 4] = 99;  // the type of the first entry
    const BytesOnDisk bytes(damaged);
    TagFile file(bytes.name(), 0, 0, 0);
    file.readThroughTagFile();
    EXPECT_EQ(std::exchange(test::issuedWarnings(), {}),
              std::vector<std::string>{"quorra:corvinex:unrecognizedTagFormatId"});
}

TEST(Reading, RaisesAsEver) {
    std::vector<unsigned char> cut = smallTiff();
    cut.resize(cut.size() - 20);
    const BytesOnDisk bytes(cut);
    TagFile file(bytes.name(), 0, 0, 0);
    EXPECT_THROW(file.readThroughTagFile(), quorra::corvinex::badIFDread);
}

}  // namespace
