#include "inspect/record/record.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/inspect/inspected.h"

namespace {

using corvinex::inspect::FileFacts;
using corvinex::inspect::JsonWriter;
using corvinex::inspect::RecordOptions;
using corvinex::inspect::TagSelection;
using inspect_test::Bytes;
using inspect_test::entryRecord;
using inspect_test::fileWith;
using inspect_test::Form;
using inspect_test::record;
using Json = nlohmann::ordered_json;

Json valueOf(const test::Field& field, const RecordOptions& options = {}) {
    return entryRecord(fileWith({field}), options)["value"];
}

/// One entry as it stands in an EXIF directory.
Json exifEntry(const test::Field& field, test::Order order = test::Order::Little) {
    test::TiffBuilder builder(order);
    const auto exif = builder.add({field});
    const auto first = builder.add({test::pointers(34665, test::LONG, {exif})});
    builder.chain({first});
    return record(builder.bytes())["directories"][1]["entries"][0];
}

std::vector<std::string> keysOf(const Json& object) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : object.items()) {
        keys.push_back(key);
    }
    return keys;
}

test::Field undefined(std::uint16_t number, std::string_view bytes) {
    test::Field field = test::ascii(number, bytes);
    field.type = test::UNDEFINED;
    return field;
}

test::Field bytes(std::uint16_t number, std::string_view characters) {
    test::Field field = test::ascii(number, characters);
    field.type = test::BYTE;
    return field;
}

using std::string_view_literals::operator""sv;

}  // namespace

TEST(Record, HasItsMembersInOrder) {
    const Json json = record(fileWith({test::number(256, test::LONG, 640)}));
    EXPECT_EQ(keysOf(json),
              (std::vector<std::string>{"schema", "file", "size", "modified", "status", "container",
                                        "byte_order", "header_offset", "directories", "derived",
                                        "findings"}));
    EXPECT_EQ(keysOf(json["directories"][0]),
              (std::vector<std::string>{"path", "kind", "offset", "entries", "derived"}));
    EXPECT_EQ(
        keysOf(json["directories"][0]["entries"][0]),
        (std::vector<std::string>{"number", "name", "field", "type", "count", "offset", "value"}));
    EXPECT_EQ(json["byte_order"], "little-endian");
    EXPECT_EQ(json["container"], "TIFF");
    EXPECT_EQ(json["header_offset"], 0);
    EXPECT_EQ(json["modified"], nullptr);
}

TEST(Record, OfWhatIsNoImageHasEmptyMembers) {
    const Json json = record({1, 2, 3});
    EXPECT_EQ(json["status"], "not-an-image");
    EXPECT_EQ(json["container"], nullptr);
    EXPECT_EQ(json["byte_order"], nullptr);
    EXPECT_EQ(json["header_offset"], nullptr);
    EXPECT_EQ(json["directories"], Json::array());
    EXPECT_EQ(json["derived"], Json::object());
    EXPECT_EQ(json["findings"], Json::array());
}

TEST(Record, OfAFileThatCannotBeReadHasOneFinding) {
    inspect_test::StringSink sink;
    JsonWriter json(sink, JsonWriter::Style::OneLine);
    writeRecord(json, {"caf\xE9.tif", std::nullopt, std::nullopt}, nullptr, {});
    json.flush();
    const Json parsed = Json::parse(sink.text);
    EXPECT_EQ(parsed["file"], "caf\xEF\xBF\xBD.tif");
    EXPECT_EQ(parsed["file_bytes"], "Y2Fm6S50aWY=");
    EXPECT_EQ(parsed["status"], "unreadable");
    EXPECT_EQ(parsed["findings"][0]["id"], "fileUnreadable");
    EXPECT_EQ(parsed["size"], nullptr);
}

TEST(Record, GivesTheTimeOfChangeInUtc) {
    inspect_test::StringSink sink;
    JsonWriter json(sink, JsonWriter::Style::OneLine);
    const Bytes none;
    const auto file = inspect_test::inspect(none);
    writeRecord(json, {"a", 0, 1'709'647'629}, &file, {});
    json.flush();
    EXPECT_EQ(Json::parse(sink.text)["modified"], "2024-03-05T14:07:09Z");
}

TEST(RecordValues, OfIntegersAndRationalsAreExact) {
    EXPECT_EQ(valueOf(test::numbers(61'000, test::SBYTE, {0x80, 0x7F})).dump(), "[-128,127]");
    EXPECT_EQ(valueOf(test::numbers(61'000, test::LONG8, {0xFFFFFFFFFFFFFFFF})).dump(),
              "[18446744073709551615]");
    EXPECT_EQ(valueOf(test::rationals(61'000, test::SRATIONAL, {{-6, 4}, {1, 0}})).dump(),
              "[[-6,4],[1,0]]");
    EXPECT_EQ(valueOf(test::rationals(282, test::RATIONAL, {{72, 1}})).dump(), "[72,1]");
}

TEST(RecordValues, OfFloatingTypesAreTheShortestOfTheirPrecision) {
    const std::string text = inspect_test::recordText(
        fileWith({test::floats(61'000, {0.1F, -0.0F, std::numeric_limits<float>::quiet_NaN(),
                                        -std::numeric_limits<float>::infinity()})}));
    EXPECT_NE(text.find("\"value\":[0.1,-0.0,\"NaN\",\"-Infinity\"]"), std::string::npos) << text;
}

TEST(RecordValues, HaveTheShapeThatTheRegistryTells) {
    EXPECT_EQ(valueOf(test::number(256, test::SHORT, 7)).dump(), "7");
    EXPECT_EQ(valueOf(test::shorts(256, {7, 8})).dump(), "[7,8]");
    EXPECT_EQ(valueOf(test::number(258, test::SHORT, 8)).dump(), "[8]");
    EXPECT_EQ(valueOf(test::number(61'000, test::SHORT, 8)).dump(), "[8]");
}

TEST(RecordValues, AreNullForACountOfZeroAndPastTheEnd) {
    EXPECT_EQ(valueOf(test::at(256, test::LONG, 0, 0)), nullptr);
    EXPECT_EQ(valueOf(test::at(256, 99, 0, 0)), nullptr);
    const Json past = entryRecord(fileWith({test::at(273, test::LONG, 1000, 70'000)}));
    EXPECT_EQ(past["value"], nullptr);
    EXPECT_EQ(past["offset"], 70'000);
    EXPECT_FALSE(past.contains("truncated"));
}

TEST(RecordValues, OfUnknownTypesAreTheFieldInBase64) {
    const Json entry = entryRecord(fileWith({test::at(256, 99, 7, 0x04030201)}));
    EXPECT_EQ(entry["type"], 99);
    EXPECT_EQ(entry["offset"], nullptr);
    EXPECT_EQ(entry["value"]["base64"], "AQIDBA==");
}

TEST(RecordTexts, EndAtTheirFirstZero) {
    const Json plain = entryRecord(fileWith({test::ascii(270, "abc\0\0\0"sv)}));
    EXPECT_EQ(plain["value"], "abc");
    EXPECT_FALSE(plain.contains("rest"));
    const Json more = entryRecord(fileWith({test::ascii(270, "abc\0\0x\0"sv)}));
    EXPECT_EQ(more["value"], "abc");
    EXPECT_EQ(more["rest"]["base64"], "AHgA");
    EXPECT_EQ(valueOf(test::ascii(270, "abcdef")), "abcdef");
    EXPECT_EQ(valueOf(test::ascii(270, "ab  \0"sv)), "ab  ");
}

TEST(RecordTexts, OfCopyrightAndInkNamesAreLists) {
    EXPECT_EQ(valueOf(test::ascii(33432, "one\0\0two\0\0\0"sv)).dump(), R"(["one","","two"])");
    EXPECT_EQ(valueOf(test::ascii(33432, "one"sv)).dump(), R"(["one"])");
    EXPECT_EQ(valueOf(test::ascii(333, "Cyan\0Magenta\0"sv)).dump(), R"(["Cyan","Magenta"])");
    // Each is in a character set of its own.
    EXPECT_EQ(valueOf(test::ascii(33432, "caf\xC3\xA9\0\x80\0"sv)).dump(),
              "[\"caf\xC3\xA9\",\"\xE2\x82\xAC\"]");
}

TEST(RecordTexts, ThatAreNotUtf8AreReadInOneSet) {
    EXPECT_EQ(valueOf(test::text(270, "caf\xC3\xA9")), "caf\xC3\xA9");
    EXPECT_EQ(valueOf(test::text(270, "\x80")), "\xE2\x82\xAC");  // the euro of windows-1252
    const Json entry = entryRecord(fileWith({test::ascii(270, "caf\xC3\xA9\0\xFF"sv)}));
    EXPECT_EQ(entry["value"], "caf\xC3\xA9");
    EXPECT_EQ(entry["rest"]["base64"], "/w==");
}

TEST(RecordTexts, InBytesFollowTheTag) {
    EXPECT_EQ(exifEntry(undefined(36864, "0231"))["value"], "0231");
    EXPECT_EQ(exifEntry(undefined(37500, "maker"))["value"]["base64"], "bWFrZXI=");
    EXPECT_EQ(valueOf(bytes(40091, "T\0i\0\0\0"sv)), "Ti");
    EXPECT_EQ(valueOf(bytes(700, "<x/>")), "<x/>");
    EXPECT_EQ(valueOf(bytes(700, "<\xFF>"))["base64"], "PP8+");
    EXPECT_EQ(valueOf(bytes(61'000, "ab")).dump(), "[97,98]");
    EXPECT_EQ(valueOf(undefined(61'000, "ab"))["base64"], "YWI=");
}

TEST(RecordComments, TellTheirCharacterSet) {
    const Json ascii = exifEntry(undefined(37510, "ASCII\0\0\0hello\0"sv));
    EXPECT_EQ(ascii["value"], "hello");
    EXPECT_EQ(ascii["charset"], "ASCII");
    const Json unicode = exifEntry(undefined(37510, "UNICODE\0\0h\0i"sv), test::Order::Little);
    EXPECT_EQ(unicode["value"], "hi");
    EXPECT_EQ(unicode["charset"], "UNICODE");
    EXPECT_EQ(exifEntry(undefined(37510, "\0\0\0\0\0\0\0\0hi"sv))["charset"], "UNDEFINED");
    const Json unknown = exifEntry(undefined(37510, "NOTASET!hi"));
    EXPECT_TRUE(unknown["value"].contains("base64"));
    EXPECT_FALSE(unknown.contains("charset"));
    EXPECT_EQ(exifEntry(test::text(37510, "plain text"))["value"], "plain text");
}

TEST(RecordVersions, AreNumbersInBytesAndTextInUndefined) {
    const auto gpsEntry = [](test::Field field) {
        test::TiffBuilder builder;
        const auto gps = builder.add({std::move(field)});
        const auto first = builder.add({test::pointers(34853, test::LONG, {gps})});
        builder.chain({first});
        return record(builder.bytes())["directories"][1]["entries"][0];
    };
    const Json entry = gpsEntry(bytes(0, "\x02\x03\0\0"sv));
    EXPECT_EQ(entry["value"].dump(), "[2,3,0,0]");
    EXPECT_EQ(entry["text"], "2.3.0.0");
    EXPECT_EQ(gpsEntry(undefined(0, "\x02\x03\0\0"sv))["value"], "2.3.0.0");
}

TEST(RecordPointers, TellAPathForEachValue) {
    test::TiffBuilder builder;
    const auto leaf = builder.add({test::number(256, test::LONG, 1)});
    const auto first = builder.add(
        {test::longs(330, {builder.positionOf(leaf), 0}), test::text(34665, "no pointer")});
    builder.chain({first});
    const Json entries = record(builder.bytes())["directories"][0]["entries"];
    EXPECT_EQ(entries[0]["directories"].dump(), R"(["0.sub0",null])");
    EXPECT_EQ(entries[1]["directories"].dump(), "[]");
}

TEST(RecordLimit, CutsListsTextsAndBytes) {
    const RecordOptions two{.maxValues = 2, .tags = {}};
    const Json numbers = entryRecord(fileWith({test::shorts(258, {1, 2, 3})}), two);
    EXPECT_EQ(numbers["value"].dump(), "[1,2]");
    EXPECT_EQ(numbers["truncated"], true);
    EXPECT_EQ(valueOf(test::text(270, "h\xC3\xA9llo"), two), "h\xC3\xA9");
    EXPECT_EQ(valueOf(undefined(61'000, "abc"), two)["base64"], "YWI=");
    EXPECT_EQ(valueOf(test::ascii(33432, "a\0b\0c"sv), two).dump(), R"(["a","b"])");
    EXPECT_FALSE(entryRecord(fileWith({test::shorts(258, {1, 2})}), two).contains("truncated"));
    EXPECT_EQ(valueOf(test::number(256, test::LONG, 9), {.maxValues = 0, .tags = {}}), 9);
}

TEST(RecordBudget, GivesValuesInOrderAsFarAsTheyFit) {
    // 24 entries share 1 MiB: allowed are 16 MiB and 4 times the file's size, 20 of them.
    std::vector<test::Field> fields;
    constexpr std::uint64_t shared = std::uint64_t{1} << 20U;
    for (std::uint16_t number = 0; number < 24; ++number) {
        fields.push_back(
            test::at(static_cast<std::uint16_t>(60'000 + number), test::UNDEFINED, shared, 400));
    }
    fields.push_back(test::number(61'000, test::SHORT, 5));
    Bytes bytes = fileWith(fields);
    bytes.resize(shared + 400);
    const Json entries = record(bytes)["directories"][0]["entries"];
    for (std::size_t i = 0; i < 24; ++i) {
        EXPECT_EQ(entries[i]["value"].is_null(), i >= 20) << i;
        EXPECT_EQ(entries[i].contains("truncated"), i >= 20) << i;
    }
    EXPECT_EQ(entries[24]["value"].dump(), "[5]");
}

TEST(RecordSelection, GoesByNameNumberAndPathInAnyCase) {
    test::TiffBuilder builder;
    const auto exif =
        builder.add({test::number(256, test::LONG, 2), test::number(37385, test::SHORT, 1)});
    const auto first =
        builder.add({test::number(256, test::LONG, 1), test::pointers(34665, test::LONG, {exif})});
    builder.chain({first});
    const auto selected = [&](const std::vector<std::string>& tags) {
        std::string all;
        const Json json = record(builder.bytes(), {.maxValues = {}, .tags = TagSelection(tags)});
        for (const Json& directory : json["directories"]) {
            for (const Json& entry : directory["entries"]) {
                all += directory["path"].get<std::string>() + ":" + entry["number"].dump() + " ";
            }
        }
        return all;
    };
    EXPECT_EQ(selected({"imagewidth"}), "0:256 0.exif:256 ");
    EXPECT_EQ(selected({"Width"}), "0:256 0.exif:256 ");
    EXPECT_EQ(selected({"256"}), "0:256 0.exif:256 ");
    EXPECT_EQ(selected({"0.EXIF.256"}), "0.exif:256 ");
    EXPECT_EQ(selected({"0.exif.flash", "0.256"}), "0:256 0.exif:37385 ");
    EXPECT_EQ(selected({"NoSuchTag"}), "");
}

TEST(FlatRecord, HasPlainNamesAndValues) {
    test::TiffBuilder builder;
    const auto exif = builder.add(
        {test::rationals(33434, test::RATIONAL, {{1, 60}}), test::number(37385, test::SHORT, 1)});
    const auto first =
        builder.add({test::number(259, test::SHORT, 50'000), test::number(259, test::SHORT, 1),
                     test::number(262, test::SHORT, 999), undefined(34675, "no profile"),
                     test::ascii(33432, "me\0"sv), test::pointers(34665, test::LONG, {exif}),
                     test::rationals(61'000, test::RATIONAL, {{1, 2}, {1, 0}})});
    builder.chain({first});
    const Json json = record(builder.bytes(), {}, Form::Flat);
    EXPECT_EQ(json["file"], "a.tif");
    EXPECT_EQ(json["0.Compression"], "ZSTD");
    EXPECT_EQ(json["0.PhotometricInterpretation"], "999");
    EXPECT_FALSE(json.contains("0.ICCProfile"));
    EXPECT_EQ(json["0.Copyright"], "me");
    EXPECT_EQ(json["0.61000"].dump(), "[0.5,null]");
    EXPECT_EQ(json["0.exif.ExposureTime"].dump(), "0.016666666666666666");
    EXPECT_EQ(json["0.exif.Flash"], "Flash fired");
    const Json codes =
        record(builder.bytes(), {.maxValues = {}, .tags = {}, .codesAsNumbers = true}, Form::Flat);
    EXPECT_EQ(codes["0.Compression"], 50'000);
    EXPECT_EQ(codes["0.exif.Flash"], 1);
}

TEST(FlatRecord, GivesFlagsAsTextWhereNoWordIsKnown) {
    const Bytes bytes = fileWith(
        {test::number(292, test::LONG, 0), test::number(293, test::LONG, 8),
         test::number(37385, test::SHORT, 0x101), test::number(48132, test::SLONG, 0xFFFF'FFFF)});
    const Json json = record(bytes, {}, Form::Flat);
    EXPECT_EQ(json["0.T4Options"], "0");
    EXPECT_EQ(json["0.T6Options"], "8");
    EXPECT_EQ(json["0.Flash"], "Flash fired, No return detection, Mode unknown, unknown (256)");
    EXPECT_EQ(json["0.ImageType"], "-1");
}

TEST(RecordText, OfFlagsTellsWhatNoWordExplains) {
    const auto textOf = [](const test::Field& field) { return entryRecord(fileWith({field})); };
    EXPECT_EQ(textOf(test::number(293, test::LONG, 8))["text"], "unknown (8)");
    EXPECT_EQ(textOf(test::number(293, test::SLONG, 0xFFFF'FFFF))["text"], "unknown (-1)");
    EXPECT_FALSE(textOf(test::number(293, test::LONG, 0)).contains("text"));
}

TEST(RecordText, IsNotMadeOfBytesWhereNumbersBelong) {
    EXPECT_FALSE(exifEntry(undefined(33434, "\x05"sv)).contains("text"));
    EXPECT_FALSE(exifEntry(undefined(42034, "\x12\x37\x03\x05"sv)).contains("text"));
    EXPECT_EQ(exifEntry(undefined(41728, "\x03"sv))["text"], "Digital still camera");
}

TEST(FlatRecord, ReadsACodeThatIsNoUtf8AsText) {
    test::TiffBuilder builder;
    const auto gps = builder.add({test::text(1, "\xD6")});
    const auto first = builder.add({test::pointers(34853, test::LONG, {gps})});
    builder.chain({first});
    EXPECT_EQ(record(builder.bytes(), {}, Form::Flat)["0.gps.GPSLatitudeRef"], "\xC3\x96");
}
