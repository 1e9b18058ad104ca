#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "tests/corpus/bounded_process.h"
#include "tests/damage/damage_samples.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"
#include "tests/support/tiff_builder.h"

// The same module file, loaded by two hosts whose values have nothing in common, must give the same
// call records. Texts of errors without a message ID are the hosts' own and left out; all else,
// warnings and errors with IDs and arguments included, is compared.

namespace {

using Json = nlohmann::ordered_json;

struct Case {
    std::string name;
    test::Bytes bytes;
    std::size_t headerPosition = 0;
    std::size_t skip = 0;
    std::size_t limit = 0;
};

void PrintTo(const Case& value, std::ostream* stream) {
    *stream << value.name;
}

/// What both hosts must agree on, as one canonical text.
std::string comparable(const std::string& record) {
    Json json = Json::parse(record);
    if (json.at("error").is_object()) {
        json.at("error").erase("message");
    }
    return json.dump();
}

std::string recordOf(std::vector<std::string> words) {
    const test::ProcessResult result = test::run(std::move(words), std::chrono::seconds(120));
    EXPECT_EQ(result.signal, 0);
    EXPECT_EQ(result.exitStatus, Json::parse(result.out).at("error").is_null() ? 0 : 1);
    return comparable(result.out);
}

std::string recordOfTheTool(const test::TemporaryFile& file, const Case& value) {
    return recordOf({CORVINEX_TOOL, "call", "--header-offset", std::to_string(value.headerPosition),
                     "--skip", std::to_string(value.skip), "--limit", std::to_string(value.limit),
                     file.path()});
}

std::string recordOfTheOtherHost(const test::TemporaryFile& file, const Case& value) {
    return recordOf({CORVINEX_OTHER_HOST, test::modulePath(), file.path(),
                     std::to_string(value.headerPosition), std::to_string(value.skip),
                     std::to_string(value.limit)});
}

/// Every sample; each cut off and with bytes of its structure changed; and calls that end in an
/// error or skip and leave out directories. A damaged chain may come back, so those have a limit.
std::vector<Case> cases() {
    std::vector<Case> list;
    for (const test::DamageSample& sample : test::sampleFilesAndWrappings()) {
        list.push_back({sample.name, sample.bytes, sample.headerPosition});
        list.push_back({sample.name + "_skip", sample.bytes, sample.headerPosition, 1, 1});
        list.push_back({sample.name + "_wrong_header", sample.bytes, sample.headerPosition + 1});
        constexpr std::size_t mostDirectories = 5;
        for (const std::size_t tenths : {2U, 5U, 9U}) {
            test::Bytes cut = sample.bytes;
            cut.resize(cut.size() * tenths / 10);
            list.push_back({sample.name + "_cut_" + std::to_string(tenths), cut,
                            sample.headerPosition, 0, mostDirectories});
        }
        for (const std::size_t step : {37U, 101U}) {
            test::Bytes changed = sample.bytes;
            // Behind the header, which stays as it is.
            for (std::size_t at = sample.headerPosition + step; at < changed.size(); at += step) {
                changed[at] ^= 0x05U;
            }
            list.push_back({sample.name + "_changed_" + std::to_string(step), changed,
                            sample.headerPosition, 0, mostDirectories});
        }
    }
    return list;
}

class BothHosts : public testing::TestWithParam<Case> {};

TEST_P(BothHosts, GiveTheSameRecord) {
    const test::TemporaryFile file(GetParam().bytes);
    EXPECT_EQ(recordOfTheOtherHost(file, GetParam()), recordOfTheTool(file, GetParam()));
}

INSTANTIATE_TEST_SUITE_P(OtherHost, BothHosts, testing::ValuesIn(cases()),
                         [](const auto& parameter) { return parameter.param.name; });

TEST(OtherHost, GivesTheErrorOfAFileThatIsNotThere) {
    const Json record =
        Json::parse(test::run({CORVINEX_OTHER_HOST, test::modulePath(), "/nowhere/missing.tif"},
                              std::chrono::seconds(120))
                        .out);
    EXPECT_TRUE(record.at("output").is_null());
    EXPECT_EQ(record.at("error"),
              (Json{{"id", "quorra:corvinex:statFailure"}, {"arguments", Json::array()}}));
}

// The cases above must be such that warnings and errors are among what is compared.
TEST(OtherHost, IsComparedOnWarningsAndErrorsWithArguments) {
    std::size_t warnings = 0;
    std::size_t errors = 0;
    for (const Case& value : cases()) {
        const test::TemporaryFile file(value.bytes);
        const Json record = Json::parse(recordOfTheOtherHost(file, value));
        for (const Json& warning : record.at("warnings")) {
            warnings += warning.at("arguments").empty() ? 0 : 1;
        }
        errors += record.at("error").is_object() && record.at("error").contains("arguments") &&
                          !record.at("error").at("arguments").empty()
                      ? 1
                      : 0;
    }
    EXPECT_GT(warnings, 50U);
    EXPECT_GT(errors, 5U);
}

TEST(OtherHost, RecordsThatDifferInOneThingAreNotTheSame) {
    const std::string record = R"({"output":{"class":"double","size":[1,1],"data":[0]},)"
                               R"("warnings":[{"id":"a:b","arguments":[1,"x"]}],"error":null})";
    for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {"[0]", "[-0.0]"}, {"\"x\"", "\"y\""}, {"a:b", "a:c"}, {"[1,1]", "[1,2]"}}) {
        std::string other = record;
        other.replace(other.find(from), from.size(), to);
        EXPECT_NE(comparable(other), comparable(record)) << to;
    }
    const std::string failed = R"({"output":null,"warnings":[],"error":{"id":null,"message":"a"}})";
    const std::string raised =
        R"({"output":null,"warnings":[],"error":{"id":"c:d","arguments":[]}})";
    EXPECT_NE(comparable(failed), comparable(raised));
}

}  // namespace
