#include <gtest/gtest.h>

#include "tests/value_reading/entries.h"

// What microscopes' software writes into descriptions.

namespace {

using namespace test;

TEST(OmeXml, TellsTheFirstImage) {
    EXPECT_EQ(mainReading(270, ascii("<?xml version=\"1.0\"?><OME "
                                     "xmlns=\"http://www.openmicroscopy.org/Schemas/OME/2016-06\">"
                                     "<Image ID=\"Image:0\" Name=\"cells.tif\">"
                                     "<Pixels SizeX=\"512\" SizeY=\"256\" SizeZ=\"5\" SizeC=\"2\" "
                                     "SizeT=\"1\" PhysicalSizeX=\"0.1\" PhysicalSizeY=\"0.1\" "
                                     "PhysicalSizeZ=\"0.5\">"
                                     "<Channel ID=\"c0\" Name=\"DAPI\"/><Channel Name=\"GFP\"/>"
                                     "</Pixels></Image><Image/></OME>")),
              "OME-XML, 2 images, \"cells.tif\", 512 x 256 px, 2 channels (DAPI, GFP), 5 slices, "
              "1 time point, pixel size 0.1 x 0.1 x 0.5 um");
}

TEST(OmeXml, TellsNoMoreThanTheFileDoes) {
    EXPECT_EQ(mainReading(270, ascii("<ome:OME><ome:Image><ome:Pixels SizeX=\"-1\" SizeC=\"1\" "
                                     "PhysicalSizeX=\"2\" PhysicalSizeXUnit=\"nm\"/></ome:Image>"
                                     "</ome:OME>")),
              "OME-XML, 1 image, 1 channel, pixel size 2 nm");
    EXPECT_EQ(mainReading(270, ascii("<OME/>")), "OME-XML, 0 images");
    EXPECT_EQ(mainReading(270, ascii("<OME>" + std::string(5'000'000, ' ') + "</OME>")),
              "OME-XML, 5,000,011 bytes");
    EXPECT_EQ(mainReading(270, ascii("<OME><Image>")), "-");
    EXPECT_EQ(mainReading(270, ascii("<SOMETHING/>")), "-");
    EXPECT_EQ(mainReading(270, ascii("ROME at night")), "-");
}

TEST(ImageJ, TellsTheStack) {
    EXPECT_EQ(mainReading(270,
                          ascii("ImageJ=1.53c\nimages=10\nchannels=2\nslices=5\nhyperstack=true\n"
                                "unit=micron\nspacing=0.5\nloop=false\n"),
                          {{282, rationals({{10000000, 1000000}})}}),
              "ImageJ 1.53c, 10 images, 2 channels, 5 slices, pixel size 0.1 um, slice distance "
              "0.5 um");
    EXPECT_EQ(mainReading(270, ascii("ImageJ=1.11a\nframes=3\nfinterval=0.25\nunit=\\u00B5m")),
              "ImageJ 1.11a, 3 frames, frame interval 0.25 s");
    EXPECT_EQ(mainReading(270, ascii("ImageJ=\nimages=1\nslices=x\n")), "ImageJ, 1 image");
}

TEST(ImageJ, OtherDescriptionsAreTheirOwnReading) {
    EXPECT_EQ(mainReading(270, ascii("Made with ImageJ=1.53c")), "-");
    EXPECT_EQ(mainReading(270, ascii("a landscape")), "-");
    EXPECT_EQ(mainReading(271, ascii("ImageJ=1.53c")), "-");
}

TEST(MicroManager, TellsTheImage) {
    EXPECT_EQ(mainReading(51123, ascii("{\"Camera\":{\"Channel\":\"inner\"},\"Channel\":\"DAPI\","
                                       "\"Exposure-ms\":10.50,\"PixelSizeUm\":0.65,\"Frame\":2,"
                                       "\"Slice\":0,\"Tags\":[1,2],\"Other\":null}")),
              "channel DAPI, exposure 10.50 ms, pixel size 0.65 um, slice 0, frame 2");
}

TEST(MicroManager, TellsTheStackOfADescription) {
    EXPECT_EQ(mainReading(270, ascii("{\"Other\":{\"Slices\":9},\"Summary\":{\"Slices\":5,"
                                     "\"Channels\":2,\"ChNames\":[\"DAPI\",\"GFP\"],"
                                     "\"Frames\":1,\"Positions\":\"many\","
                                     "\"Nested\":{\"Channels\":7}},\"Channels\":3}")),
              "Micro-Manager, 2 channels, 5 slices, 1 frame");
    EXPECT_EQ(mainReading(270, ascii("{\"Summary\":{}}")), "Micro-Manager");
    EXPECT_EQ(mainReading(270, ascii("{\"Summary\":[5]}")), "-");
    EXPECT_EQ(mainReading(270, ascii("{\"Summary\":{\"Slices\":5}")), "-");
    EXPECT_EQ(mainReading(270, ascii("{\"Slices\":5}")), "-");
}

TEST(MicroManager, OtherTextsAreTheirOwnReading) {
    EXPECT_EQ(mainReading(51123, ascii("{\"Channel\":\"DAPI\"")), "-");
    EXPECT_EQ(mainReading(51123, ascii("{}")), "-");
    EXPECT_EQ(mainReading(51123, ascii("plain")), "-");
    EXPECT_EQ(mainReading(51123, ascii("{\"a\":" + std::string(100'000, '['))), "-");
}

}  // namespace
