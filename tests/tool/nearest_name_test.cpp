#include "tool/nearest_name.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 3> names{"show", "call", "--header-offset"};

TEST(NearestName, IsTheOneASlipAway) {
    for (const std::string_view word : {"show", "shw", "shoow", "snow", "shwo"}) {
        EXPECT_EQ(tool::nearestName(word, names), "show") << word;
    }
    EXPECT_EQ(tool::nearestName("cell", names), "call");
}

TEST(NearestName, OfALongWordMayBeSeveralSlipsAway) {
    EXPECT_EQ(tool::nearestName("--heder-ofset", names), "--header-offset");
    EXPECT_EQ(tool::nearestName("--headeroffsets", names), "--header-offset");
}

TEST(NearestName, IsNotThereForAWordThatResemblesNone) {
    for (const std::string& word :
         {std::string(), std::string("print"), std::string("sw"), std::string(100000, 'x')}) {
        EXPECT_EQ(tool::nearestName(word, names), std::nullopt) << word.substr(0, 20);
    }
}

}  // namespace
