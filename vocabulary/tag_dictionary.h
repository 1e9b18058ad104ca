#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "host/interface/export.h"

namespace corvinex {

/// Tag numbers and field names of one kind of directory, ascending by number. They serve search_map
/// alone: the module itself names tags by the constant tables. They are built when the module is
/// loaded, before any call of its entry, and only read afterwards.
using TagDictionary = std::map<std::uint16_t, std::string>;

/// Main and EXIF directories: 319 tags.
extern const TagDictionary primaryMap;
/// GPS directories: 31 tags.
extern const TagDictionary GPSmap;
/// Interoperability directories: 5 tags.
extern const TagDictionary interopMap;

}  // namespace corvinex

/// The name of a tag, or "unknown" when the dictionary does not know it. Exported with the module;
/// the module itself names entries through TiffTag::setTagName, where an unknown tag's name is
/// empty.
ZX_HOST_API std::string search_map(const corvinex::TagDictionary* map, unsigned short tag);
