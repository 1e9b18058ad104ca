#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tests/tool/run_command.h"
#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"

// Files for the tests of the tool's commands, and what the commands print.

namespace tool_test {

/// Two directories of one by one pixel; the second leads to the offset given.
inline std::string twoDirectories(std::uint64_t next = 0) {
    TiffBytes tiff;
    tiff.header(8);
    tiff.count(3).shortEntry(256, 1).shortEntry(257, 1).shortEntry(259, 1).offset(50);
    tiff.count(3).shortEntry(256, 2).shortEntry(257, 2).shortEntry(259, 1).offset(next);
    return tiff.bytes();
}

inline std::string jpegWithOrientation() {
    return jpegAround(TiffBytes().header(8).count(1).shortEntry(274, 6).offset(0).bytes());
}

inline nlohmann::json recordOf(const CommandResult& result) {
    EXPECT_EQ(result.out.find('\n'), result.out.size() - 1) << "one line";
    return nlohmann::json::parse(result.out);
}

inline std::size_t elementsOf(const CommandResult& result) {
    return recordOf(result)["output"]["data"].size();
}

inline std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// A folder with a file of two directories and a file that is no image.
class CommandFiles : public testing::Test {
  protected:
    const TemporaryFolder folder;
    const std::string good = folder.file("good.tif", twoDirectories());
    const std::string bad = folder.file("bad.tif", "no image");
};

}  // namespace tool_test
