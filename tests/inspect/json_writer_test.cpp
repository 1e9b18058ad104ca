#include "inspect/record/json_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "inspect/record/value_json.h"
#include "tests/inspect/inspected.h"

namespace {

using corvinex::inspect::JsonWriter;

template <class Write>
std::string written(Write write, JsonWriter::Style style = JsonWriter::Style::OneLine) {
    inspect_test::StringSink sink;
    JsonWriter json(sink, style);
    write(json);
    json.flush();
    return sink.text;
}

std::string stringOf(std::string_view text) {
    return written([&](JsonWriter& json) { json.string(text); });
}

std::string base64Of(const std::vector<std::uint8_t>& bytes) {
    return written([&](JsonWriter& json) { json.base64(bytes); });
}

template <class Number>
std::string numberOf(Number number) {
    return written([&](JsonWriter& json) { json.number(number); });
}

}  // namespace

TEST(JsonStrings, EscapeWhatATerminalOrAReaderOfLinesTakesForItsOwn) {
    EXPECT_EQ(stringOf("a\"b\\c/"), "\"a\\\"b\\\\c/\"\n");
    EXPECT_EQ(stringOf(std::string_view("\0\x1F\n\x7F", 4)), "\"\\u0000\\u001f\\u000a\\u007f\"\n");
    EXPECT_EQ(stringOf("\xC2\x80\xC2\x9F\xC2\xA0"), "\"\\u0080\\u009f\xC2\xA0\"\n");
    EXPECT_EQ(stringOf("\xE2\x80\xA7\xE2\x80\xA8\xE2\x80\xA9\xE2\x80\xAA"),
              "\"\xE2\x80\xA7\\u2028\\u2029\xE2\x80\xAA\"\n");
    EXPECT_EQ(stringOf("\xE2\x82\xAC\xF0\x9F\x98\x80"), "\"\xE2\x82\xAC\xF0\x9F\x98\x80\"\n");
}

TEST(JsonStrings, OfAnyLengthPassThroughTheBuffer) {
    for (const std::size_t length : {65'535U, 65'536U, 65'537U, 200'000U}) {
        const std::string text = std::string(length, 'x') + "\n" + std::string(length, 'y');
        EXPECT_EQ(nlohmann::json::parse(stringOf(text)).get<std::string>(), text);
    }
}

TEST(JsonNumbers, AreTheShortestOfTheirPrecision) {
    EXPECT_EQ(numberOf(0.1F), "0.1\n");
    EXPECT_EQ(numberOf(0.1), "0.1\n");
    EXPECT_EQ(numberOf(static_cast<double>(0.1F)), "0.10000000149011612\n");
    EXPECT_EQ(numberOf(-0.0), "-0.0\n");
    EXPECT_EQ(numberOf(-0.0F), "-0.0\n");
    EXPECT_EQ(numberOf(1e22), "1e+22\n");
    EXPECT_EQ(numberOf(72.0), "72\n");
    EXPECT_EQ(numberOf(std::nan("")), "\"NaN\"\n");
    EXPECT_EQ(numberOf(std::numeric_limits<double>::infinity()), "\"Infinity\"\n");
    EXPECT_EQ(numberOf(-std::numeric_limits<float>::infinity()), "\"-Infinity\"\n");
    const auto integers = [](JsonWriter& json) {
        json.beginArray();
        json.integer(std::numeric_limits<std::uint64_t>::max());
        json.integer(std::numeric_limits<std::int64_t>::min());
        json.endArray();
    };
    EXPECT_EQ(written(integers), "[18446744073709551615,-9223372036854775808]\n");
}

TEST(JsonNumbers, HaveAnExponentWhereTheyWouldReadAsIntegersOfMoreThan64Bits) {
    EXPECT_EQ(numberOf(673341194029008420864.0), "6.733411940290084e+20\n");
    EXPECT_EQ(numberOf(-0x1p63), "-9.223372036854776e+18\n");
    EXPECT_EQ(numberOf(0x1p64F), "1.8446744e+19\n");
    EXPECT_EQ(numberOf(9223372036854774784.0), "9223372036854774784\n");
    EXPECT_EQ(numberOf(std::numeric_limits<double>::max()), "1.7976931348623157e+308\n");
}

TEST(JsonBytes, AreInThePaddedStandardAlphabet) {
    EXPECT_EQ(base64Of({}), "\"\"\n");
    EXPECT_EQ(base64Of({'f'}), "\"Zg==\"\n");
    EXPECT_EQ(base64Of({'f', 'o'}), "\"Zm8=\"\n");
    EXPECT_EQ(base64Of({'f', 'o', 'o'}), "\"Zm9v\"\n");
    EXPECT_EQ(base64Of({0xFB, 0xFF, 0xBF, 0x00}), "\"+/+/AA==\"\n");
}

TEST(JsonLayout, PutsEachRowOnALineWhenIndented) {
    const auto write = [](JsonWriter& json) {
        json.beginObject()
            .key<"a">()
            .beginList()
            .integer(std::uint64_t{1})
            .integer(std::uint64_t{2});
        json.endArray().key<"b">().beginArray();
        json.beginRow().key<"c">().null().key<"d">().boolean(true).endObject();
        json.endArray().key<"e">().beginArray().endArray().endObject();
    };
    EXPECT_EQ(written(write), "{\"a\":[1,2],\"b\":[{\"c\":null,\"d\":true}],\"e\":[]}\n");
    EXPECT_EQ(
        written(write, JsonWriter::Style::Indented),
        "{\n  \"a\": [1, 2],\n  \"b\": [\n    {\"c\": null, \"d\": true}\n  ],\n  \"e\": []\n}\n");
}

TEST(Utf8, HasOneReplacementForEachBadByte) {
    using corvinex::inspect::validUtf8;
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(validUtf8("a\xC3\xA9.tif"), "a\xC3\xA9.tif");
    EXPECT_EQ(validUtf8("\xFF\xFE"), replacement + replacement);
    EXPECT_EQ(validUtf8("\xE2\x82x"), replacement + replacement + "x");
    EXPECT_EQ(validUtf8("\xED\xA0\x80"), replacement + replacement + replacement);
    EXPECT_EQ(validUtf8("\xC3"), replacement);
}

TEST(Utf8, IsCutBetweenCharacters) {
    using corvinex::inspect::firstCharacters;
    EXPECT_EQ(firstCharacters("a\xC3\xA9\xF0\x9F\x98\x80z", 3), "a\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(firstCharacters("ab", 5), "ab");
    EXPECT_EQ(firstCharacters("ab", 0), "");
}
