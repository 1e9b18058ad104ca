#include "inspect/reading/xml.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/value_reading/entries.h"

// XML inside tags: packets, metadata of rasters and of microscopes.

namespace {

using namespace test;
using corvinex::inspect::reading::indentedXml;
using corvinex::inspect::reading::parseXml;

/// A document whose entities stand for each other, ten times each, nine levels deep.
std::string entityBomb(const std::string& root, const std::string& content) {
    std::string document = "<?xml version=\"1.0\"?><!DOCTYPE " + root + " [<!ENTITY e0 \"ha\">";
    for (int level = 1; level < 10; ++level) {
        document += "<!ENTITY e" + std::to_string(level) + " \"";
        for (int times = 0; times < 10; ++times) {
            document += "&e" + std::to_string(level - 1) + ";";
        }
        document += "\">";
    }
    return document + "]><" + root + ">" + content + "</" + root + ">";
}

std::string nested(std::size_t depth, const std::string& name) {
    std::string document;
    for (std::size_t level = 0; level < depth; ++level) {
        document += "<" + name + ">";
    }
    for (std::size_t level = 0; level < depth; ++level) {
        document += "</" + name + ">";
    }
    return document;
}

TEST(Xml, EntitiesOfTheDocumentAreNotExpanded) {
    const std::string bomb = entityBomb("GDALMetadata", "<Item name=\"a\">&e9;</Item>");
    EXPECT_EQ(mainReading(42112, ascii(bomb)), "a: &e9;");
}

TEST(Xml, NothingOutsideTheDocumentIsRead) {
    EXPECT_EQ(mainReading(42112, ascii("<!DOCTYPE GDALMetadata [<!ENTITY x SYSTEM "
                                       "\"file:///etc/passwd\">]><GDALMetadata><Item "
                                       "name=\"a\">&x;</Item></GDALMetadata>")),
              "a: &x;");
}

TEST(Xml, DeepNestingIsNoHarm) {
    EXPECT_EQ(mainReading(700, bytes(nested(200'000, "dc:title"))), "XMP packet, 4,200,000 bytes");
    EXPECT_EQ(indentedXml(nested(1000, "a")), std::nullopt);
}

TEST(Xml, AVeryLongDocumentIsNotParsed) {
    EXPECT_NE(parseXml("<a>" + std::string(1'000'000, ' ') + "</a>"), nullptr);
    EXPECT_EQ(parseXml("<a>" + std::string(5'000'000, ' ') + "</a>"), nullptr);
}

TEST(Xml, WhatIsNotWellFormedIsNoDocument) {
    EXPECT_EQ(parseXml(""), nullptr);
    EXPECT_EQ(parseXml("text"), nullptr);
    EXPECT_EQ(parseXml("<a><b></a>"), nullptr);
}

TEST(Xml, IsIndentedByDepth) {
    EXPECT_EQ(indentedXml("<a><b c=\"1\"/><d>text</d></a>"),
              "<a>\n  <b c=\"1\" />\n  <d>text</d>\n</a>\n");
}

TEST(GdalMetadata, TellsEachItem) {
    EXPECT_EQ(mainReading(42112, ascii("<GDALMetadata>\n"
                                       "  <Item name=\"AREA_OR_POINT\">Area</Item>\n"
                                       "  <Item name=\"SCALE\" sample=\"0\" role=\"scale\">0.1"
                                       "</Item>\n"
                                       "  <Item name=\"NBITS\" domain=\"IMAGE_STRUCTURE\">\n12"
                                       "\n</Item>\n"
                                       "</GDALMetadata>\n")),
              "AREA_OR_POINT: Area\nband 1 SCALE: 0.1\nNBITS: 12 (IMAGE_STRUCTURE)");
}

TEST(GdalMetadata, OtherTextsAreNotRead) {
    EXPECT_EQ(mainReading(42112, ascii("<Other><Item name=\"a\">b</Item></Other>")), "-");
    EXPECT_EQ(mainReading(42112, ascii("<GDALMetadata/>")), "-");
    EXPECT_EQ(mainReading(42112, ascii("<GDALMetadata><Item name=\"a\">")), "-");
    EXPECT_EQ(mainReading(42112, ascii("plain")), "-");
    EXPECT_EQ(mainReading(42112, longs({1})), "-");
}

TEST(GdalMetadata, OfVeryManyItemsTheFirstAreTold) {
    std::string document = "<GDALMetadata>";
    for (int item = 0; item < 1000; ++item) {
        document += "<Item name=\"n\">v</Item>";
    }
    const std::string reading = mainReading(42112, ascii(document + "</GDALMetadata>"));
    EXPECT_TRUE(reading.ends_with("\nn: v\n... (1,000 items in all)")) << reading;
}

TEST(Xmp, TellsSizeTitleAndCreatorTool) {
    const std::string packet =
        "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>"
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF><rdf:Description "
        "xmp:CreatorTool=\"A Program 2.1\"><dc:title><rdf:Alt><rdf:li "
        "xml:lang=\"x-default\">Sea and\n sky</rdf:li></rdf:Alt></dc:title></rdf:Description>"
        "</rdf:RDF></x:xmpmeta><?xpacket end=\"w\"?>";
    EXPECT_EQ(mainReading(700, bytes(packet)),
              "XMP packet, 296 bytes, title \"Sea and  sky\", creator tool \"A Program 2.1\"");
    EXPECT_EQ(mainReading(700, bytes("<a><xap:CreatorTool>B</xap:CreatorTool></a>")),
              "XMP packet, 43 bytes, creator tool \"B\"");
    EXPECT_EQ(mainReading(700, undefined("<x:xmpmeta/>")), "XMP packet, 12 bytes");
}

TEST(Xmp, OfADamagedPacketTheSizeIsTold) {
    EXPECT_EQ(mainReading(700, bytes("<x:xmpmeta><xmp:CreatorTool>A")), "XMP packet, 29 bytes");
    EXPECT_EQ(mainReading(700, longs({1, 2})), "-");
}

TEST(Xmp, PropertiesAreValidUtf8WhateverThePacketHolds) {
    EXPECT_EQ(mainReading(700, bytes("<a xmp:CreatorTool=\"caf\xE9 \x01\"/>")),
              "XMP packet, 29 bytes, creator tool \"caf\xC3\xA9\"");
}

}  // namespace
