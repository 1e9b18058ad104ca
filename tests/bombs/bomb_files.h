#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "tests/support/tiff_builder.h"

// Small files that ask for far more work or memory than their size lets expect. The tests say what
// reading them reports, bench/bombs what it costs.

namespace test {

/// What a bomb is laid out in.
enum class Container { Classic, BigTiff, Jpeg };
inline constexpr Container allContainers[] = {Container::Classic, Container::BigTiff,
                                              Container::Jpeg};
/// A name for a container: "classic", "big" or "jpeg".
const char* nameOf(Container container);

/// A file and where its TIFF header stands.
struct BombFile {
    Bytes bytes;
    std::size_t headerPosition = 0;
};

/// Puts a TIFF structure into its container; a JPEG holds it in the EXIF block.
BombFile inContainer(const TiffBuilder& structure, Container container);
/// An empty structure of the layout that a container needs.
TiffBuilder structureFor(Container container);

/// A bomb that consists of directories and pointers between them.
struct PointerBomb {
    const char* name;  ///< one word, joined by hyphens
    TiffBuilder (*build)(Container);
};
std::span<const PointerBomb> pointerBombs();

// Single pointer bombs, for tests that look at one closely.

/// A directory whose SubIFDs tag has this many pointers to the directory itself.
TiffBuilder pointersToItself(Container container, std::size_t count);
/// The same through the EXIF pointer; the main directory leads to the EXIF directory first.
TiffBuilder exifToItself(Container container);
/// Two directories, each pointing at the other.
TiffBuilder pointingAtEachOther(Container container);
/// A directory with this many pointers to a sub-directory whose chain runs back into it.
TiffBuilder chainRunningBack(Container container, std::size_t count);
/// A nest of directories, each pointing to the next.
TiffBuilder nest(Container container, std::size_t levels);
/// Levels of directories, each with this many pointers to the next.
TiffBuilder pyramid(Container container, std::size_t pointersPerLevel, std::size_t levels);
/// This many pointers of a tag to one directory of so many entries.
TiffBuilder pointersToOne(Container container, std::uint16_t tag, std::size_t count,
                          std::size_t entries);

}  // namespace test
