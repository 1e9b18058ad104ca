#include "tests/damage/tiff_map.h"

#include <algorithm>
#include <array>
#include <utility>

#include "vocabulary/field_types.h"

namespace test {

namespace {

/// A tag that leads to directories.
struct Pointer {
    std::uint16_t tag;
    const char* field;
    DirectoryKind kind;
};

constexpr std::array<Pointer, 4> pointerTags{{
    {330, "SubIFDs", DirectoryKind::Main},
    {34665, "DigitalCamera", DirectoryKind::Exif},
    {34853, "GPSInfo", DirectoryKind::Gps},
    {40965, "InteroperabilityIFD", DirectoryKind::Interop},
}};

const Pointer* findPointer(std::uint16_t tag) {
    const auto found = std::find_if(pointerTags.begin(), pointerTags.end(),
                                    [tag](const Pointer& pointer) { return pointer.tag == tag; });
    return found == pointerTags.end() ? nullptr : &*found;
}

}  // namespace

TiffMap::TiffMap(const DamageSample& sample)
    : bytes_(sample.bytes),
      header_(sample.headerPosition),
      isJpeg_(bytes_.at(0) == 0xFF),
      isBig_(!isJpeg_ && (bytes_.at(2) == 43 || bytes_.at(3) == 43)),
      isLittle_(bytes_.at(header_) == 'I'),
      structure_(bytes_.size()) {
    mark(0, signatureLength());
    mark(header_, headerEnd());
    firstDirectory_ = header_ + number(headerEnd() - offsetSize(), offsetSize());
    readChain(firstDirectory_, headerEnd(), {{}}, DirectoryKind::Main);
}

std::uint64_t TiffMap::number(std::size_t position, std::size_t width) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i) {
        value = value << 8 | bytes_.at(position + (isLittle_ ? width - 1 - i : i));
    }
    return value;
}

void TiffMap::mark(std::size_t begin, std::size_t end) {
    std::fill(structure_.begin() + static_cast<std::ptrdiff_t>(begin),
              structure_.begin() + static_cast<std::ptrdiff_t>(end), true);
}

void TiffMap::readChain(std::size_t position, std::size_t reachedFrom, std::vector<MapStep> path,
                        DirectoryKind kind) {
    while (position < bytes_.size()) {
        const std::size_t first = position + countSize();
        const std::uint64_t count = number(position, countSize());
        const MapBlock block{reachedFrom, position, first, first + count * entrySize()};
        const std::size_t end = block.next + offsetSize();
        mark(position, end);
        blocks_.push_back(block);
        readEntries(block, path, kind);
        const std::uint64_t next = number(block.next, offsetSize());
        if (kind != DirectoryKind::Main || next == 0) {
            return;
        }
        reachedFrom = std::max(reachedFrom, end);
        position = header_ + next;
        ++path.back().directory;
    }
}

void TiffMap::readEntries(const MapBlock& block, const std::vector<MapStep>& path,
                          DirectoryKind kind) {
    for (std::size_t position = block.entries; position < block.next; position += entrySize()) {
        readEntry(position, block, path, kind);
    }
}

void TiffMap::readEntry(std::size_t position, const MapBlock& block,
                        const std::vector<MapStep>& path, DirectoryKind kind) {
    const auto tag = static_cast<std::uint16_t>(number(position, 2));
    const auto type = static_cast<std::uint32_t>(number(position + 2, 2));
    const std::size_t width = corvinex::isKnownTypeCode(type) ? corvinex::getElementWidth(type) : 0;
    const std::uint64_t count = number(position + 4, offsetSize());
    const std::size_t length = width * count;
    std::size_t values = position + 4 + offsetSize();
    if (length > offsetSize()) {
        values = header_ + number(values, offsetSize());
    }
    if (width == 0 || values + length > bytes_.size()) {
        return;  // the module drops such an entry
    }
    mark(values, values + length);
    const MapEntry entry{path, kind, tag,
                         std::max({block.reachedFrom, block.next, values + length})};
    const bool mayPoint = kind == DirectoryKind::Main || kind == DirectoryKind::Exif;
    if (mayPoint && findPointer(tag) != nullptr) {
        followPointers(entry, values, count);
    } else {
        entries_.push_back(entry);
    }
}

void TiffMap::followPointers(const MapEntry& entry, std::size_t values, std::uint64_t count) {
    const Pointer& pointer = *findPointer(entry.tag);
    for (std::uint64_t i = 0; i < count; ++i) {
        std::vector<MapStep> path = entry.path;
        path.push_back({pointer.field, i, 0});
        const std::size_t target = header_ + number(values + i * 4, 4);
        readChain(target, entry.keptFrom, std::move(path), pointer.kind);
    }
}

}  // namespace test
