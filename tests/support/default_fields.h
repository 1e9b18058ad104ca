#pragma once

#include <string>
#include <vector>

namespace test {

// The fields that every element of a main set opens with, written down a second time.

/// Of every kind of file.
inline const std::vector<std::string> commonFields{
    "Filename", "FileModDate", "FileSize", "Format",    "FormatVersion",
    "Width",    "Height",      "BitDepth", "ColorType", "FormatSignature"};

/// After them, of TIFF and BigTIFF files.
inline const std::vector<std::string> tiffFields{"ByteOrder",
                                                 "NewSubFileType",
                                                 "BitsPerSample",
                                                 "Compression",
                                                 "PhotometricInterpretation",
                                                 "StripOffsets",
                                                 "SamplesPerPixel",
                                                 "RowsPerStrip",
                                                 "StripByteCounts",
                                                 "XResolution",
                                                 "YResolution",
                                                 "ResolutionUnit",
                                                 "Colormap",
                                                 "PlanarConfiguration",
                                                 "TileWidth",
                                                 "TileLength",
                                                 "TileOffsets",
                                                 "TileByteCounts",
                                                 "Orientation",
                                                 "FillOrder",
                                                 "GrayResponseUnit",
                                                 "MaxSampleValue",
                                                 "MinSampleValue",
                                                 "Thresholding",
                                                 "Offset"};

/// Both in order.
inline std::vector<std::string> allTiffFields() {
    std::vector<std::string> fields = commonFields;
    fields.insert(fields.end(), tiffFields.begin(), tiffFields.end());
    return fields;
}

}  // namespace test
