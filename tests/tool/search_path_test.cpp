#include <elf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/elf_image.h"
#include "tests/tool/run_command.h"
#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"

// Where the loader looks for libraries: a folder of images from elsewhere is never one of the
// places, whatever the files in it are called.

namespace {

namespace fs = std::filesystem;

bool isElf(const fs::path& path) {
    std::array<char, SELFMAG> start{};
    std::ifstream(path, std::ios::binary).read(start.data(), start.size());
    return std::string_view(start.data(), start.size()) == ELFMAG;
}

/// The programs and libraries below the folders that the build and an installation fill.
std::vector<fs::path> builtBinaries() {
    std::vector<fs::path> binaries;
    const fs::path root = fs::path(CORVINEX_TOOL).parent_path().parent_path();
    for (const char* const folder : {"bin", "lib", "bench"}) {
        if (!fs::exists(root / folder)) {
            continue;
        }
        for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
            if (entry.is_regular_file() && isElf(entry.path())) {
                binaries.push_back(entry.path());
            }
        }
    }
    return binaries;
}

/// The elements of the search paths that a binary names itself, empty ones included.
std::vector<std::string> searchPathElements(const test::ElfImage& image) {
    std::vector<std::string> elements;
    for (const Elf64_Sxword tag : {DT_RUNPATH, DT_RPATH}) {
        for (const std::string& path : image.dynamicTexts(tag)) {
            std::size_t start = 0;
            for (std::size_t end = 0; end != std::string::npos; start = end + 1) {
                end = path.find(':', start);
                elements.push_back(path.substr(start, end - start));
            }
        }
    }
    return elements;
}

/// Names of libraries that the tool and what it loads ask the loader for.
std::set<std::string> libraryNames() {
    std::set<std::string> names{"libtiff.so.6", "libjpeg.so.62", "libz.so.1"};
    for (const fs::path& binary : builtBinaries()) {
        names.insert(binary.filename());
        for (const std::string& name : test::ElfImage(binary).dynamicTexts(DT_NEEDED)) {
            names.insert(name);
        }
    }
    return names;
}

/// Makes a folder the current one while it lives.
class CurrentFolder {
  public:
    explicit CurrentFolder(const fs::path& folder) : before_(fs::current_path()) {
        fs::current_path(folder);
    }
    ~CurrentFolder() { fs::current_path(before_); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

  private:
    fs::path before_;
};

TEST(SearchPath, NamesNoFolderThatDependsOnWhereABinaryIsStarted) {
    const std::vector<fs::path> binaries = builtBinaries();
    ASSERT_GE(binaries.size(), 4U);
    for (const fs::path& binary : binaries) {
        for (const std::string& element : searchPathElements(test::ElfImage(binary))) {
            EXPECT_TRUE(element.starts_with("/") || element == "$ORIGIN" ||
                        element.starts_with("$ORIGIN/"))
                << binary << " has the element \"" << element << '"';
        }
    }
}

TEST(SearchPath, LeadsTheToolToNoFalseLibraryInTheCurrentFolder) {
    const tool_test::TemporaryFolder folder;
    for (const std::string& name : libraryNames()) {
        fs::copy_file(CORVINEX_FALSE_LIBRARY, folder.path(name));
    }
    const std::string image =
        folder.file("image.tif",
                    tool_test::TiffBytes().header(8).count(1).shortEntry(256, 3).offset(0).bytes());
    const CurrentFolder inside(folder.path(""));
    for (const char* const command : {"show", "call"}) {
        const tool_test::CommandResult result = tool_test::runTool({command, "image.tif"});
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.err, "");
    }
}

}  // namespace
