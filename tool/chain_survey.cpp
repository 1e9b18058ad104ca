#include "tool/chain_survey.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
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

// Places inside an entry; the value field follows the count.
constexpr std::size_t typePosition = 2;
constexpr std::size_t countPosition = 4;

constexpr std::uint64_t entriesAtOnce = 200;

// A sparse file can be of any size, and its directories as long as that.
constexpr std::uint64_t mostBytes = std::uint64_t{1} << 30U;

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

/// Tags that give a directory of a JPEG no field, or not in every case.
constexpr bool givesNoSureField(std::uint64_t tag) {
    return tag == ImageWidth || tag == ImageLength || tag == GpsPointer ||
           tag == InteroperabilityPointer;
}

/// The walk over every directory that the module would read. Each chain start and each EXIF
/// directory is looked at once. All of it together is bounded, but for the steps along the main
/// chain.
class Walk {
  public:
    Walk(const DirectoryReader& reader, std::uint64_t limit)
        : reader_(reader),
          limit_(limit == 0 ? std::numeric_limits<std::uint64_t>::max() : limit),
          budget_(std::min(4 * reader.file().size() + (16U << 20U), mostBytes)),
          block_(static_cast<std::size_t>(entriesAtOnce * reader.entrySize())) {}

    ChainSurvey survey(std::uint64_t start) {
        knownChains_.insert(start);
        follow(start);
        survey_.mainDirectories = survey_.longest;
        survey_.mainComesBack = survey_.anyComesBack;
        while (survey_.isWhole && !survey_.mayNeverEnd) {
            if (!pendingExif_.empty()) {
                lookAtEntries(reader_.outlineAt(taken(pendingExif_)));
            } else if (!pendingChains_.empty()) {
                follow(taken(pendingChains_));
            } else {
                break;
            }
        }
        survey_.mayNeverEnd = survey_.mayNeverEnd || (reader_.isJpeg() && !survey_.isWhole);
        return survey_;
    }

  private:
    static std::uint64_t taken(std::vector<std::uint64_t>& pending) {
        const std::uint64_t position = pending.back();
        pending.pop_back();
        return position;
    }

    void follow(std::uint64_t start) {
        // By position: how many directories that are surely kept were read before.
        std::unordered_map<std::uint64_t, std::uint64_t> keptBefore;
        std::uint64_t kept = 0;
        std::optional<std::uint64_t> position = start;
        while (position && kept < limit_) {
            const DirectoryOutline outline = reader_.outlineAt(*position);
            if (outline.entryCount == 0) {
                break;
            }
            const auto [known, isNew] = keptBefore.try_emplace(*position, kept);
            if (!isNew) {
                survey_.anyComesBack = true;
                survey_.mayNeverEnd = survey_.mayNeverEnd || known->second == kept;
                break;
            }
            kept += lookAtEntries(outline) ? 1 : 0;
            position = nextDirectory(reader_, outline);
        }
        survey_.longest = std::max<std::uint64_t>(survey_.longest, keptBefore.size());
    }

    /// Notes where the directory's pointers lead; tells whether the directory is surely kept: one
    /// of a TIFF always, one of a JPEG for an entry that is no pointer.
    bool lookAtEntries(const DirectoryOutline& outline) {
        bool surelyKept = !reader_.isJpeg();
        if (!outline.entriesInFile || !spend(outline.entryCount * reader_.entrySize())) {
            return surelyKept;
        }
        const auto entrySize = static_cast<std::size_t>(reader_.entrySize());
        for (std::uint64_t i = 0; i < outline.entryCount && survey_.isWhole; i += entriesAtOnce) {
            const std::uint64_t entries = std::min(outline.entryCount - i, entriesAtOnce);
            const std::uint64_t position = outline.entriesAt + i * entrySize;
            const auto block =
                std::span(block_).first(static_cast<std::size_t>(entries) * entrySize);
            if (!reader_.file().read(position, block)) {
                break;
            }
            for (std::size_t at = 0; at < block.size(); at += entrySize) {
                surelyKept = lookAtEntry(block.subspan(at, entrySize), position + at, surelyKept);
            }
        }
        return surelyKept;
    }

    /// What matters of an entry: where it leads if it is a pointer, and else, unless its directory
    /// is surely kept already, whether it is kept.
    bool lookAtEntry(std::span<const unsigned char> bytes, std::uint64_t position,
                     bool surelyKept) {
        const std::uint64_t tag = reader_.number(bytes.first(typePosition));
        const bool leadsOn = tag == SubIFDs || tag == ExifPointer;
        if (!leadsOn && (surelyKept || givesNoSureField(tag))) {
            return surelyKept;
        }
        const auto entry = entryOf(bytes, position);
        if (!entry || !entry->valueInFile) {
            return surelyKept;
        }
        if (leadsOn) {
            notePointers(*entry);
            return surelyKept;
        }
        return entry->type.holdsValues;
    }

    /// The entry whose bytes stand at a position; nothing when the module refuses its type.
    std::optional<Entry> entryOf(std::span<const unsigned char> bytes,
                                 std::uint64_t position) const {
        const auto fieldSize = static_cast<std::size_t>(reader_.offsetSize());
        const auto valuePosition = countPosition + fieldSize;
        const std::uint64_t typeCode = reader_.number(bytes.subspan(typePosition, 2));
        if (typeCode >= typeLayouts.size() || typeLayouts[typeCode].width == 0) {
            return std::nullopt;
        }
        Entry entry{.tag = reader_.number(bytes.first(typePosition)),
                    .type = typeLayouts[typeCode],
                    .count = reader_.number(bytes.subspan(countPosition, fieldSize)),
                    .valueAt = position + valuePosition,
                    .valueInFile = true};
        if (entry.count > fieldSize / entry.type.width) {
            const auto target =
                reader_.positionOf(reader_.number(bytes.subspan(valuePosition, fieldSize)));
            const std::uint64_t size = reader_.file().size();
            entry.valueAt = target.value_or(0);
            entry.valueInFile =
                target && *target <= size && entry.count <= (size - *target) / entry.type.width;
        }
        return entry;
    }

    void notePointers(const Entry& entry) {
        for (std::uint64_t i = 0; i < entry.count && spend(4); ++i) {
            const auto target = reader_.positionOf(pointerOf(entry, i));
            if (!target || *target >= reader_.file().size()) {
                continue;
            }
            const bool isChain = entry.tag == SubIFDs;
            if ((isChain ? knownChains_ : knownExif_).insert(*target).second) {
                (isChain ? pendingChains_ : pendingExif_).push_back(*target);
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
        survey_.isWhole = survey_.isWhole && bytes <= budget_;
        budget_ -= survey_.isWhole ? bytes : 0;
        return survey_.isWhole;
    }

    const DirectoryReader& reader_;
    std::uint64_t limit_;
    std::uint64_t budget_;  // bytes that may still be looked at
    std::vector<unsigned char> block_;
    ChainSurvey survey_;
    std::unordered_set<std::uint64_t> knownChains_;
    std::unordered_set<std::uint64_t> knownExif_;
    std::vector<std::uint64_t> pendingChains_;
    std::vector<std::uint64_t> pendingExif_;
};

}  // namespace

ChainSurvey surveyChains(const DirectoryReader& reader, std::uint64_t start, std::uint64_t limit) {
    return Walk(reader, limit).survey(start);
}

}  // namespace tool
