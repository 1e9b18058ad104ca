#include "tool/endless_chain.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "tool/chain_check.h"

namespace tool {
namespace {

enum Tag : std::uint16_t {
    ImageWidth = 256,
    ImageLength = 257,
    SubIFDs = 330,
    ExifPointer = 34665,
    GpsPointer = 34853,
    InteroperabilityPointer = 40965,
};

constexpr std::uint64_t valueFieldSize = 4;

struct TypeLayout {
    std::uint64_t width;        // bytes of a value
    std::uint64_t elementSize;  // bytes that are put in order together
    bool holdsValues;           // not a directory pointer's type
};

// By field type code; those that the module refuses have no width.
constexpr std::array<TypeLayout, 19> typeLayouts{{
    {0, 0, false},  //  0
    {1, 1, true},   //  1 BYTE
    {1, 1, true},   //  2 ASCII
    {2, 2, true},   //  3 SHORT
    {4, 4, true},   //  4 LONG
    {8, 4, true},   //  5 RATIONAL
    {1, 1, true},   //  6 SBYTE
    {1, 1, true},   //  7 UNDEFINED
    {2, 2, true},   //  8 SSHORT
    {4, 4, true},   //  9 SLONG
    {8, 4, true},   // 10 SRATIONAL
    {4, 4, true},   // 11 FLOAT
    {8, 8, true},   // 12 DOUBLE
    {4, 4, false},  // 13 IFD
    {0, 0, false},  // 14
    {0, 0, false},  // 15
    {8, 8, true},   // 16 LONG8
    {8, 8, true},   // 17 SLONG8
    {8, 8, false},  // 18 IFD8
}};

struct Entry {
    std::uint64_t tag;
    TypeLayout type;
    std::uint64_t count;
    std::uint64_t valueAt;  // absolute position of the value's bytes
    bool valueInFile;
};

constexpr bool isPointer(std::uint64_t tag) {
    return tag == SubIFDs || tag == ExifPointer || tag == GpsPointer ||
           tag == InteroperabilityPointer;
}

/// The walk over every directory that the module would read. Each chain start and each EXIF
/// directory is looked at once, and all of it together is bounded.
class Walk {
  public:
    Walk(const DirectoryReader& reader, std::uint64_t limit)
        : reader_(reader), limit_(limit), budget_(4 * reader.file().size() + (16U << 20U)) {}

    bool mayNeverEnd(std::uint64_t start) {
        addChain(start);
        while (!tooMuch_) {
            if (!pendingExif_.empty()) {
                lookAtEntries(reader_.outlineAt(taken(pendingExif_)));
            } else if (pendingChains_.empty()) {
                return false;
            } else if (chainMayNeverEnd(taken(pendingChains_))) {
                return true;
            }
        }
        return true;
    }

  private:
    static std::uint64_t taken(std::vector<std::uint64_t>& pending) {
        const std::uint64_t position = pending.back();
        pending.pop_back();
        return position;
    }

    void addChain(std::uint64_t start) {
        if (knownChains_.insert(start).second) {
            pendingChains_.push_back(start);
        }
    }

    bool chainMayNeverEnd(std::uint64_t start) {
        // By position: how many directories that are surely kept were read before.
        std::unordered_map<std::uint64_t, std::uint64_t> keptBefore;
        std::uint64_t kept = 0;
        std::optional<std::uint64_t> position = start;
        while (position && !tooMuch_ && kept < limit_) {
            const auto [known, isNew] = keptBefore.try_emplace(*position, kept);
            if (!isNew) {
                return known->second == kept;
            }
            const DirectoryOutline outline = reader_.outlineAt(*position);
            kept += lookAtEntries(outline) ? 1 : 0;
            position = nextDirectory(reader_, outline);
        }
        return false;
    }

    /// Notes where the directory's pointers lead; tells whether one of its other entries is surely
    /// kept.
    bool lookAtEntries(const DirectoryOutline& outline) {
        if (!outline.entriesInFile || !spend(outline.entryCount * reader_.entrySize())) {
            return false;
        }
        bool surelyKept = false;
        for (std::uint64_t i = 0; i < outline.entryCount && !tooMuch_; ++i) {
            const auto entry = entryAt(outline.entriesAt + i * reader_.entrySize());
            if (!entry || !entry->valueInFile) {
                continue;
            }
            if (isPointer(entry->tag)) {
                notePointers(*entry);
            } else if (entry->tag != ImageWidth && entry->tag != ImageLength) {
                surelyKept = surelyKept || entry->type.holdsValues;
            }
        }
        return surelyKept;
    }

    std::optional<Entry> entryAt(std::uint64_t position) const {
        std::array<unsigned char, 12> bytes{};
        if (!reader_.file().read(position, bytes)) {
            return std::nullopt;
        }
        const std::span<const unsigned char> all(bytes);
        const std::uint64_t typeCode = reader_.number(all.subspan(2, 2));
        if (typeCode >= typeLayouts.size() || typeLayouts[typeCode].width == 0) {
            return std::nullopt;
        }
        Entry entry{.tag = reader_.number(all.first(2)),
                    .type = typeLayouts[typeCode],
                    .count = reader_.number(all.subspan(4, 4)),
                    .valueAt = position + 8,
                    .valueInFile = true};
        const std::uint64_t length = entry.count * entry.type.width;
        if (length > valueFieldSize) {
            const auto target = reader_.positionOf(reader_.number(all.subspan(8, 4)));
            entry.valueAt = target.value_or(0);
            entry.valueInFile = target && *target <= reader_.file().size() &&
                                length <= reader_.file().size() - *target;
        }
        return entry;
    }

    void notePointers(const Entry& entry) {
        for (std::uint64_t i = 0; i < entry.count && spend(4); ++i) {
            const auto target = reader_.positionOf(pointerOf(entry, i));
            if (!target || *target >= reader_.file().size()) {
                continue;
            }
            if (entry.tag == SubIFDs) {
                addChain(*target);
            } else if (entry.tag == ExifPointer && knownExif_.insert(*target).second) {
                // An EXIF directory may hold pointers of its own, GPS and interoperability may not.
                pendingExif_.push_back(*target);
            }
        }
    }

    /// The module takes pointers at a stride of 4 bytes from the value as it lies in memory, each
    /// element of the field's type put in order, with zeros behind its end.
    std::uint64_t pointerOf(const Entry& entry, std::uint64_t index) const {
        const std::uint64_t length = entry.count * entry.type.width;
        std::uint64_t pointer = 0;
        for (std::uint64_t at = index * 4; at < index * 4 + 4 && at < length; ++at) {
            const std::uint64_t within = at % entry.type.elementSize;
            const std::uint64_t source =
                reader_.isBigEndian() ? at - within + entry.type.elementSize - 1 - within : at;
            std::array<unsigned char, 1> byte{};
            if (reader_.file().read(entry.valueAt + source, byte)) {
                pointer |= static_cast<std::uint64_t>(byte[0]) << (8 * (at - index * 4));
            }
        }
        return pointer;
    }

    bool spend(std::uint64_t bytes) {
        tooMuch_ = tooMuch_ || bytes > budget_;
        budget_ -= tooMuch_ ? 0 : bytes;
        return !tooMuch_;
    }

    const DirectoryReader& reader_;
    std::uint64_t limit_;
    std::uint64_t budget_;  // bytes that may still be looked at
    bool tooMuch_ = false;
    std::unordered_set<std::uint64_t> knownChains_;
    std::unordered_set<std::uint64_t> knownExif_;
    std::vector<std::uint64_t> pendingChains_;
    std::vector<std::uint64_t> pendingExif_;
};

}  // namespace

bool mayNeverEnd(const DirectoryReader& reader, std::uint64_t start, std::uint64_t limit) {
    return reader.isJpeg() && Walk(reader, limit).mayNeverEnd(start);
}

}  // namespace tool
