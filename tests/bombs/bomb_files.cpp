#include "tests/bombs/bomb_files.h"

#include <utility>
#include <vector>

namespace test {

namespace {

constexpr std::uint16_t subIfds = 330;
constexpr std::uint16_t exifPointer = 34665;
constexpr std::uint16_t firstPrivateTag = 60000;

std::vector<std::size_t> repeated(std::size_t directory, std::size_t count) {
    return std::vector<std::size_t>(count, directory);
}

/// Entries without any name, so that none is checked or decoded.
std::vector<Field> plainEntries(std::size_t count) {
    std::vector<Field> fields;
    fields.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        fields.push_back(number(static_cast<std::uint16_t>(firstPrivateTag + i), SHORT, i));
    }
    return fields;
}

}  // namespace

const char* nameOf(Container container) {
    switch (container) {
        case Container::Classic:
            return "classic";
        case Container::BigTiff:
            return "big";
        default:
            return "jpeg";
    }
}

TiffBuilder structureFor(Container container) {
    return TiffBuilder(Order::Little,
                       container == Container::BigTiff ? Layout::Big : Layout::Classic);
}

BombFile inContainer(const TiffBuilder& structure, Container container) {
    if (container != Container::Jpeg) {
        return {structure.bytes(), 0};
    }
    JpegWithExif jpeg = jpegWithExif(structure.bytes());
    return {std::move(jpeg.bytes), jpeg.headerPosition};
}

TiffBuilder pointersToItself(Container container, std::size_t count) {
    TiffBuilder file = structureFor(container);
    file.add({number(firstPrivateTag, SHORT, 1), pointers(subIfds, LONG, repeated(0, count))});
    return file;
}

TiffBuilder exifToItself(Container container) {
    TiffBuilder file = structureFor(container);
    file.add({pointers(exifPointer, LONG, {1})});
    file.add({number(firstPrivateTag, SHORT, 1), pointers(exifPointer, LONG, {1})});
    return file;
}

TiffBuilder pointingAtEachOther(Container container) {
    TiffBuilder file = structureFor(container);
    file.add({number(firstPrivateTag, SHORT, 1), pointers(subIfds, LONG, {1})});
    file.add({number(firstPrivateTag, SHORT, 2), pointers(subIfds, LONG, {0})});
    return file;
}

TiffBuilder chainRunningBack(Container container, std::size_t count) {
    TiffBuilder file = structureFor(container);
    file.add({number(firstPrivateTag, SHORT, 1), pointers(subIfds, LONG, repeated(1, count))});
    file.add({number(firstPrivateTag, SHORT, 2)});
    file.nextDirectory(1, 0);
    return file;
}

TiffBuilder nest(Container container, std::size_t levels) {
    return pyramid(container, 1, levels);
}

TiffBuilder pyramid(Container container, std::size_t pointersPerLevel, std::size_t levels) {
    TiffBuilder file = structureFor(container);
    for (std::size_t level = 0; level < levels; ++level) {
        file.add({number(firstPrivateTag, SHORT, level),
                  pointers(subIfds, LONG, repeated(level + 1, pointersPerLevel))});
    }
    file.add({number(firstPrivateTag, SHORT, levels)});
    return file;
}

TiffBuilder pointersToOne(Container container, std::uint16_t tag, std::size_t count,
                          std::size_t entries) {
    TiffBuilder file = structureFor(container);
    file.add({pointers(tag, LONG, repeated(1, count))});
    file.add(plainEntries(entries));
    return file;
}

std::span<const PointerBomb> pointerBombs() {
    static constexpr PointerBomb bombs[] = {
        {"sub-ifds-to-itself", [](Container c) { return pointersToItself(c, 1); }},
        {"thousand-sub-ifds-to-itself", [](Container c) { return pointersToItself(c, 1000); }},
        {"exif-to-itself", exifToItself},
        {"pointing-at-each-other", pointingAtEachOther},
        {"chain-running-back", [](Container c) { return chainRunningBack(c, 1); }},
        {"three-chains-running-back", [](Container c) { return chainRunningBack(c, 3); }},
        {"nest-of-100000", [](Container c) { return nest(c, 100'000); }},
        {"pyramid-2-over-60", [](Container c) { return pyramid(c, 2, 60); }},
        {"pyramid-3-over-8", [](Container c) { return pyramid(c, 3, 8); }},
        {"pyramid-8-over-10", [](Container c) { return pyramid(c, 8, 10); }},
        {"million-sub-ifds-to-one",
         [](Container c) { return pointersToOne(c, 330, 1'000'000, 1); }},
        {"million-sub-ifds-to-one-of-20",
         [](Container c) { return pointersToOne(c, 330, 1'000'000, 20); }},
        {"million-exif-to-one", [](Container c) { return pointersToOne(c, 34665, 1'000'000, 1); }},
        {"million-gps-to-one", [](Container c) { return pointersToOne(c, 34853, 1'000'000, 1); }},
        {"as-many-sub-ifds-as-are-kept", [](Container c) { return pointersToOne(c, 330, 750, 1); }},
        {"as-many-entries-as-are-kept",
         [](Container c) {
             return pointersToOne(c, 330, 1'500, c == Container::BigTiff ? 550 : 920);
         }},
        {"thousand-sub-ifds-to-one-of-1400",
         [](Container c) { return pointersToOne(c, 330, 1000, 1400); }},
    };
    return bombs;
}

}  // namespace test
