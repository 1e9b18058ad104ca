#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "corvinex/directory_kind.h"
#include "inspect/record/tag_selection.h"
#include "vocabulary/registry.h"

// The tags of all directories by their names and numbers, as people ask for them.

namespace tool {

/// A tag in one kind of directory. Main and sub directories are one.
struct CatalogTag {
    corvinex::inspect::DirectoryKind kind;
    std::uint16_t number;
    const corvinex::registry::TagFact* fact;  ///< null for one that only the result has a name for
    std::string_view field;                   ///< the result's name; empty where it has none
};

/// All tags that have a name: main, exif, gps, interop, each by ascending number.
[[nodiscard]] std::vector<CatalogTag> allTags();

/// Lower-case letters of A to Z, the same in every locale.
[[nodiscard]] std::string lowered(std::string_view text);

/// The word with the standard's name in place of a short one that people use, as ICC.
[[nodiscard]] std::string fullName(std::string_view word);

/// The numbers of the tags that a word means: of those with this standard, result or short name,
/// without regard to case, or the number that it is. A path and a point may stand before it. Empty
/// for a word that means none.
[[nodiscard]] std::vector<std::uint16_t> numbersMeantBy(std::string_view word);

/// The same of a word from the command line. Raises UsageError for one that means none, and for a
/// path that no directory has.
[[nodiscard]] std::vector<std::uint16_t> numbersAskedFor(std::string_view word);

/// The selection of the tags that words from the command line mean. Raises UsageError for the first
/// that means none.
[[nodiscard]] corvinex::inspect::TagSelection tagsAskedFor(std::span<const std::string> words);

/// What to tell of a word that means no tag: the word, and the name nearest to it.
[[nodiscard]] std::string noSuchTag(std::string_view word);

}  // namespace tool
