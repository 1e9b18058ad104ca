#include "tool/call_record.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

#include "tests/tool/host_values.h"

namespace {

using namespace tool_test;

std::string recordOf(const host::CallResult& result) {
    std::ostringstream out;
    tool::writeCallRecord(out, result);
    return out.str();
}

/// The JSON of one value as an output.
std::string jsonOf(host::ValuePtr value) {
    host::CallResult result;
    result.output = std::move(value);
    const std::string record = recordOf(result);
    const std::string before = "{\"output\":";
    const std::string after = ",\"warnings\":[],\"error\":null}\n";
    EXPECT_TRUE(record.starts_with(before)) << record;
    EXPECT_TRUE(record.ends_with(after)) << record;
    return record.substr(before.size(), record.size() - before.size() - after.size());
}

TEST(CallRecord, NumbersAreTheShortestText) {
    EXPECT_EQ(jsonOf(doubles(1, 4, {8, 0.1, -1e30, 1.0 / 3})),
              R"({"class":"double","size":[1,4],"data":[8,0.1,-1e+30,0.3333333333333333]})");
}

TEST(CallRecord, NumbersThatAreNotFiniteAreNamed) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(jsonOf(doubles(1, 3, {nan, infinity, -infinity})),
              R"({"class":"double","size":[1,3],"data":["NaN","Infinity","-Infinity"]})");
}

TEST(CallRecord, LongTextsWithCharactersOfTwoUnitsAreWhole) {
    // Texts are escaped in pieces; no character may be cut by the end of one.
    for (const std::size_t before : {4094U, 4095U, 4096U}) {
        const std::u16string units = std::u16string(before, u'"') + u"\U0001F600" + u"end";
        std::string escaped;
        for (std::size_t i = 0; i < before; ++i) {
            escaped += "\\\"";
        }
        const std::string length = std::to_string(units.size());
        EXPECT_EQ(jsonOf(host::makeText(units)), R"({"class":"char","size":[1,)" + length +
                                                     R"(],"data":")" + escaped +
                                                     "\xF0\x9F\x98\x80" + R"(end"})");
    }
}

TEST(CallRecord, MatricesGoColumnByColumn) {
    EXPECT_EQ(jsonOf(doubles(2, 3, {1, 2, 3, 4, 5, 6})),
              R"({"class":"double","size":[2,3],"data":[1,2,3,4,5,6]})");
}

TEST(CallRecord, EmptyValuesHaveTheirSize) {
    EXPECT_EQ(jsonOf(host::ValuePtr(
                  api::zxCreateNumericArray(0, nullptr, zxClassID::Double, zxComplexity::Real))),
              R"({"class":"double","size":[0,0],"data":[]})");
    EXPECT_EQ(jsonOf(host::makeText(u"")), R"({"class":"char","size":[0,0],"data":""})");
    EXPECT_EQ(jsonOf(cellRow()), R"({"class":"cell","size":[1,0],"data":[]})");
}

TEST(CallRecord, BytesAreNumbers) {
    EXPECT_EQ(jsonOf(bytes({0, 255})), R"({"class":"uint8","size":[1,2],"data":[0,255]})");
}

TEST(CallRecord, TextIsUtf8AndCountsUtf16Units) {
    EXPECT_EQ(jsonOf(host::makeText(u"ü\U0001F4F7")),
              "{\"class\":\"char\",\"size\":[1,3],\"data\":\"ü\U0001F4F7\"}");
}

TEST(CallRecord, TextIsEscapedAsJsonWants) {
    EXPECT_EQ(jsonOf(host::makeText(std::u16string(u"\"\\\n\0\x1f", 5))),
              R"({"class":"char","size":[1,5],"data":"\"\\\n\u0000\u001F"})");
}

TEST(CallRecord, LoneSurrogatesAreEscaped) {
    EXPECT_EQ(jsonOf(host::makeText(u"\xDC00\"\U0001F4F7\xD800")),
              "{\"class\":\"char\",\"size\":[1,5],\"data\":\"\\udc00\\\"\U0001F4F7\\ud800\"}");
}

TEST(CallRecord, CellsHoldValuesAndNull) {
    EXPECT_EQ(jsonOf(cellRow(host::makeText(u"a"), host::ValuePtr())),
              R"({"class":"cell","size":[1,2],"data":[{"class":"char","size":[1,1],"data":"a"},)"
              R"(null]})");
}

TEST(CallRecord, StructsListTheirFieldsAndHaveNullWhereNothingWasSet) {
    host::ValuePtr array = structColumn(2, {"B", "A"});
    set(array, 1, "A", host::makeNumber(1));
    EXPECT_EQ(jsonOf(std::move(array)),
              R"({"class":"struct","size":[2,1],"fields":["B","A"],"data":[)"
              R"({"B":null,"A":null},{"B":null,"A":{"class":"double","size":[1,1],"data":[1]}}]})");
}

TEST(CallRecord, WarningsKeepTheirOrderAndArguments) {
    host::CallResult result;
    result.output = host::makeNumber(0);
    result.warnings.push_back({"a:b:first", {std::uint64_t{273}, std::u16string(u"Width")}});
    result.warnings.push_back({"a:b:second", {std::numeric_limits<std::uint64_t>::max()}});
    EXPECT_EQ(recordOf(result),
              R"({"output":{"class":"double","size":[1,1],"data":[0]},"warnings":[)"
              R"({"id":"a:b:first","arguments":[273,"Width"]},)"
              R"({"id":"a:b:second","arguments":[18446744073709551615]}],"error":null})"
              "\n");
}

TEST(CallRecord, AnErrorWithAnIdIsAReport) {
    host::CallResult result;
    result.failure = host::Failure{host::Report{"a:b:c", {}}, "text"};
    EXPECT_EQ(recordOf(result),
              "{\"output\":null,\"warnings\":[],\"error\":{\"id\":\"a:b:c\",\"arguments\":[]}}\n");
}

TEST(CallRecord, AnErrorWithoutAnIdHasItsMessageAsValidText) {
    host::CallResult result;
    result.failure = host::Failure{std::nullopt, "bad \xFF"};
    EXPECT_EQ(recordOf(result),
              "{\"output\":null,\"warnings\":[],"
              "\"error\":{\"id\":null,\"message\":\"bad \uFFFD\"}}\n");
}

}  // namespace
