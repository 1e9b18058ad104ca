#include "host/messages/message_catalog.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "host/platform/unicode.h"

using host::messageText;
using Arguments = std::vector<resource_core::BaseMsgID::Argument>;

namespace {

/// A message with arguments of the kinds that the module attaches.
struct Sample {
    const char* id;
    Arguments arguments;
};

const std::vector<Sample> samples = {
    {"quorra:corvinex:unsupportedFileFormat", {}},
    {"quorra:corvinex:statFailure", {}},
    {"quorra:corvinex:tiffHeaderReadFailure", {}},
    {"quorra:corvinex:badEndianness",
     {std::uint64_t{71}, std::uint64_t{72}, std::u16string(u"a.jpg")}},
    {"quorra:corvinex:badTiffIfdOffset", {std::uint64_t{7001}, std::uint64_t{7000}}},
    {"quorra:corvinex:badTiffHeaderIfdOffset", {}},
    {"quorra:corvinex:unableToReadTagData", {}},
    {"quorra:corvinex:badIFDread", {std::u16string(u"IFD #1")}},
    {"quorra:corvinex:strftimeFailure", {}},
    {"quorra:corvinex:badTagDataCount",
     {std::uint64_t{256}, std::u16string(u"Width"), std::uint64_t{7}, std::uint64_t{1}}},
    {"quorra:corvinex:unrecognizedTagFormatId", {std::uint64_t{14}}},
    {"quorra:corvinex:unrecognizedIfdId", {std::uint64_t{4}}},
    {"quorra:corvinex:argumentOutOfBounds", {}},
    {"KORVEL:string:MustBeStringScalarOrCharacterVector", {}},
    {"KORVEL:string:MissingNotSupported", {}},
    {"quorra:corvinex:numberOfDirectoryEntriesReadError", {std::uint64_t{8}}},
    {"quorra:corvinex:numDirectoryEntriesIsZero", {std::uint64_t{8}}},
    {"quorra:corvinex:jpegApp1MaximumLengthExceeded", {std::uint64_t{5462}}},
    {"quorra:corvinex:badNextIfdPointerSeek", {}},
    {"quorra:corvinex:nextIfdPointerOutOfRange", {std::uint64_t{7001}}},
    {"quorra:corvinex:nextIfdOffsetReadError", {std::uint64_t{7001}}},
    {"quorra:corvinex:zeroComponentCount", {std::u16string(u"Make")}},
    {"quorra:corvinex:noTypeFormatId", {std::u16string(u"Make")}},
    {"quorra:corvinex:unrecognizedTagId", {std::uint64_t{60000}}},
    {"quorra:corvinex:unrecognizedIfd", {std::uint64_t{271}}},
    {"quorra:corvinex:badTagDataOffsetSeek", {std::uint64_t{271}}},
    {"quorra:corvinex:tagDataPastEOF", {std::uint64_t{273}, std::uint64_t{400}}},
    {"quorra:corvinex:unableToReadTiffTag", {std::u16string(u"Make"), std::uint64_t{900}}},
    {"quorra:corvinex:badTagValueDivisionByZero", {std::u16string(u"XResolution")}},
    {"quorra:corvinex:expectedTagDataFormat",
     {std::u16string(u"Make"), std::u16string(u"TIFF_ASCII"), std::u16string(u"TIFF_BYTE")}},
    {"quorra:corvinex:expectedTagDataFormatMultiple",
     {std::u16string(u"Width"), std::u16string(u"TIFF_SSHORT"),
      std::u16string(u"TIFF_SHORT, TIFF_LONG")}},
    {"quorra:corvinex:badSubIfdSeek", {std::uint64_t{900}}},
    {"quorra:corvinex:illegallyNestedIFD", {std::uint64_t{34665}, std::u16string(u"GPS")}},
};

/// How the text of a message must show an argument.
std::string shownIn(const std::string& id, const resource_core::BaseMsgID::Argument& argument) {
    if (argument.text) {
        return host::displayText(*argument.text);
    }
    if (id == "quorra:corvinex:badEndianness") {
        return argument.number == 71 ? "0x47" : "0x48";
    }
    return std::to_string(argument.number);
}

std::string pastEndOfFile(std::uint64_t tag) {
    return messageText({"quorra:corvinex:tagDataPastEOF", {tag, std::uint64_t{400}}});
}

std::string zeroCount(const std::u16string& name) {
    return messageText({"quorra:corvinex:zeroComponentCount", {name}});
}

}  // namespace

TEST(MessageCatalog, EveryMessageHasATextOfItsOwnThatShowsEachArgument) {
    std::set<std::string> texts;
    for (const Sample& sample : samples) {
        const std::string text = messageText({sample.id, sample.arguments});
        EXPECT_EQ(text.find(sample.id), std::string::npos) << sample.id;
        EXPECT_EQ(text.find_first_of("{}"), std::string::npos) << text;
        EXPECT_EQ(text.find("(not given)"), std::string::npos) << text;
        EXPECT_TRUE(texts.insert(text).second) << text;
        for (const auto& argument : sample.arguments) {
            const std::string shown = shownIn(sample.id, argument);
            EXPECT_NE(text.find(shown), std::string::npos) << text << " lacks " << shown;
        }
    }
}

TEST(MessageCatalog, TagNumbersComeWithTheirNames) {
    EXPECT_EQ(pastEndOfFile(273),
              "The value of tag StripOffsets (273), 400 bytes, ends past the end of the file");
    EXPECT_EQ(pastEndOfFile(36867).find("The value of tag DateTimeOriginal (36867), "), 0U);
}

TEST(MessageCatalog, ATagNumberOfGpsAndInteroperabilityDirectoriesStandsAlone) {
    // The report does not tell the directory, and in a main directory it is an unknown tag.
    EXPECT_EQ(pastEndOfFile(29).find("The value of tag 29, "), 0U);
    EXPECT_EQ(pastEndOfFile(4097).find("The value of tag 4097, "), 0U);
}

TEST(MessageCatalog, ATagNumberListedTwiceHasItsFirstName) {
    EXPECT_EQ(pastEndOfFile(347).find("The value of tag JPEGTables (347), "), 0U);
}

TEST(MessageCatalog, UnknownAndAmbiguousTagNumbersStandAlone) {
    for (const std::uint64_t tag :
         {std::uint64_t{60000}, std::uint64_t{1}, std::uint64_t{2}, std::uint64_t{273} + 65536}) {
        EXPECT_EQ(pastEndOfFile(tag).find("The value of tag " + std::to_string(tag) + ", 400"), 0U);
    }
}

TEST(MessageCatalog, ATagWithoutANameIsCalledUnnamed) {
    EXPECT_EQ(zeroCount(u"").find("Tag (unnamed) has"), 0U);
    EXPECT_EQ(zeroCount(u"Make").find("Tag Make has"), 0U);
}

TEST(MessageCatalog, BytesAreHexadecimal) {
    const std::string text =
        messageText({"quorra:corvinex:badEndianness",
                     {std::uint64_t{255}, std::uint64_t{10}, std::u16string(u"gr\u00FC\xD800")}});
    EXPECT_NE(text.find("0xFF 0x0A"), std::string::npos) << text;
    EXPECT_NE(text.find("gr\xC3\xBC\xEF\xBF\xBD"), std::string::npos) << text;
}

TEST(MessageCatalog, UnsignedNumbersShowWhole) {
    EXPECT_NE(messageText({"quorra:corvinex:tagDataPastEOF", {std::uint64_t{273}, UINT64_MAX}})
                  .find("18446744073709551615"),
              std::string::npos);
}

TEST(MessageCatalog, MissingAndMisfitArgumentsStillGiveAText) {
    EXPECT_EQ(messageText({"quorra:corvinex:tagDataPastEOF", {std::uint64_t{273}}}),
              "The value of tag StripOffsets (273), (not given) bytes, ends past the end of the "
              "file");
    EXPECT_EQ(messageText({"quorra:corvinex:tagDataPastEOF",
                           {std::u16string(u"{1}"), std::u16string(), std::uint64_t{3}}}),
              "The value of tag {1},  bytes, ends past the end of the file");
    EXPECT_EQ(
        messageText({"quorra:corvinex:zeroComponentCount", {std::uint64_t{7}}}).find("Tag 7 has"),
        0U);
}

TEST(MessageCatalog, AnUnknownIdReadsAsItselfAndItsArguments) {
    EXPECT_EQ(messageText({"some:other:id", {}}), "some:other:id");
    EXPECT_EQ(messageText({"some:other:id", {std::uint64_t{3}, std::u16string(u"x\u00E9")}}),
              "some:other:id: 3, x\xC3\xA9");
}
