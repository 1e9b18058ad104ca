#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tests/tool/temporary_file.h"
#include "tests/tool/terminal_session.h"
#include "tests/tool/tiff_bytes.h"

// What `inspect` prints on a terminal.

namespace {

using tool_test::TemporaryFolder;
using tool_test::TerminalSession;
using Texts = std::vector<std::string>;

class InspectOnATerminal : public testing::Test {
  protected:
    /// What a terminal with so many columns shows.
    std::string shown(Texts options, const Texts& variables, unsigned short columns = 80) const {
        options.insert(options.begin(), {"inspect", file_});
        TerminalSession session(options, columns, TerminalSession::Output::Terminal, variables);
        session.closeInput("");
        EXPECT_EQ(session.wait(), 0);
        return session.shown();
    }

    static bool isColoured(const std::string& text) {
        return text.find("\x1b[1m0\x1b[0m: image") != std::string::npos;
    }

    const TemporaryFolder folder_;
    const std::string file_ = folder_.file("a.tif", tool_test::TiffBytes()
                                                        .header(8)
                                                        .count(1)
                                                        .entry(270, 2, 201, 26)
                                                        .offset(0)
                                                        .raw(std::string(200, 'x') + '\0')
                                                        .bytes());
};

std::size_t longestLine(std::string_view text) {
    std::size_t longest = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\r'), text.size());
        longest = std::max(longest, end);
        text.remove_prefix(std::min(text.size(), text.find('\n', end) + 1));
    }
    return longest;
}

TEST_F(InspectOnATerminal, IsInColourUnlessSomebodyWantsNone) {
    EXPECT_TRUE(isColoured(shown({}, {"TERM=xterm", "NO_COLOR="})));
    EXPECT_TRUE(isColoured(shown({"--color=auto"}, {"TERM=xterm", "NO_COLOR="})));
    for (const Texts& variables :
         {Texts{"TERM=xterm", "NO_COLOR=1"}, Texts{"TERM=dumb", "NO_COLOR="}}) {
        EXPECT_EQ(shown({}, variables).find('\x1b'), std::string::npos) << variables.front();
        EXPECT_TRUE(isColoured(shown({"--color=always"}, variables))) << variables.front();
    }
    EXPECT_EQ(shown({"--color=never"}, {"TERM=xterm", "NO_COLOR="}).find('\x1b'),
              std::string::npos);
}

TEST_F(InspectOnATerminal, IsAsWideAsTheTerminal) {
    const Texts plain{"NO_COLOR=1"};
    EXPECT_LE(longestLine(shown({}, plain, 60)), 60U);
    EXPECT_GT(longestLine(shown({}, plain, 60)), 50U);
    EXPECT_GT(longestLine(shown({}, plain, 120)), 110U);
    EXPECT_GT(longestLine(shown({"--width=120"}, plain, 60)), 110U);
}

}  // namespace
