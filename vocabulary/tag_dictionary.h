#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "host/interface/export.h"
#include "vocabulary/tag_row_index.h"

namespace corvinex {

/// Tag numbers and field names of one kind of directory, ascending by number. The dictionaries are
/// built when the module is loaded, before any call of its entry, and only read afterwards.
using TagDictionary = std::map<std::uint16_t, std::string>;

/// Main and EXIF directories: 319 tags.
extern const TagDictionary primaryMap;
/// GPS directories: 31 tags.
extern const TagDictionary GPSmap;
/// Interoperability directories: 5 tags.
extern const TagDictionary interopMap;

/// The names of a dictionary by number, for naming entries of GPS and interoperability directories:
/// those of primaryMap are found with all other rules of a tag.
class TagNameIndex {
  public:
    /// The dictionary must outlive the index.
    explicit TagNameIndex(const TagDictionary& dictionary);

    /// The name of a tag, or null when the dictionary does not know it. The text lives as long as
    /// the module.
    [[nodiscard]] const char* find(std::uint16_t tag) const noexcept {
        const std::size_t row = rows_.find(tag);
        return row == TagRowIndex::none ? nullptr : names_[row];
    }

  private:
    TagRowIndex rows_;
    std::vector<const char*> names_;
};

extern const TagNameIndex gpsNames;
extern const TagNameIndex interopNames;

}  // namespace corvinex

/// The name of a tag, or "unknown" when the dictionary does not know it. Exported with the module;
/// the module itself names entries through TiffTag::setTagName, where an unknown tag's name is
/// empty.
ZX_HOST_API std::string search_map(const corvinex::TagDictionary* map, unsigned short tag);
