#include "tool/command_table.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tool/arguments.h"
#include "tool/help_text.h"
#include "tool/option_values.h"

namespace {

TEST(CommandTable, NamesEachCommandAndEachOptionOfACommandOnce) {
    std::set<std::string_view> commands;
    for (const tool::CommandRow& command : tool::allCommands()) {
        EXPECT_TRUE(commands.insert(command.name).second) << command.name;
        std::set<std::string_view> options{"help"};
        for (const tool::OptionRow& option : command.options) {
            EXPECT_TRUE(options.insert(option.name).second) << command.name << ' ' << option.name;
        }
    }
}

TEST(CommandTable, HasInitialValuesOfTheKindThatTheirOptionsTake) {
    for (const tool::CommandRow& command : tool::allCommands()) {
        for (const tool::OptionRow& option : command.options) {
            EXPECT_TRUE(option.initial.empty() || tool::acceptsValue(option, option.initial))
                << command.name << ' ' << option.name;
            EXPECT_EQ(option.placeholder.empty(), option.kind == tool::ValueKind::None)
                << command.name << ' ' << option.name;
        }
    }
}

TEST(CommandTable, IsToldByTheHelpInShortLines) {
    std::ostringstream all;
    tool::printHelp(all);
    for (const tool::CommandRow& command : tool::allCommands()) {
        std::ostringstream own;
        tool::printHelp(own, command);
        EXPECT_NE(all.str().find("\n  " + std::string(command.name) + ' '), std::string::npos);
        for (const tool::OptionRow& option : command.options) {
            const std::string letter =
                option.letter == 0 ? "" : std::string{'-', option.letter, ',', ' '};
            EXPECT_NE(own.str().find("\n  " + letter + "--" + option.name), std::string::npos);
        }
        all << own.str();
    }
    std::istringstream lines(all.str());
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 79U) << line;
        EXPECT_FALSE(line.ends_with(' ')) << line;
    }
}

TEST(Arguments, HaveTheInitialValueWithoutTheOption) {
    const tool::CommandRow& show = tool::allCommands().front();
    ASSERT_EQ(show.name, "show");
    tool::Arguments arguments(show);
    EXPECT_EQ(arguments.whole("skip"), 0U);
    EXPECT_EQ(arguments.whole("header-offset"), std::nullopt);
    EXPECT_EQ(arguments.text("warnings"), "first");
    EXPECT_FALSE(arguments.isGiven("skip"));
    arguments.set(show.options.front(), "7");
    EXPECT_EQ(arguments.whole("skip"), 7U);
    EXPECT_TRUE(arguments.isGiven("skip"));
}

TEST(Arguments, KnowTheOptionsOfTheirCommandOnly) {
    const tool::Arguments arguments(tool::allCommands().front());
    EXPECT_THROW(static_cast<void>(arguments.text("unknown")), std::logic_error);
}

}  // namespace
