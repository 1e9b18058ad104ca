#include <algorithm>
#include <array>
#include <memory_resource>
#include <span>
#include <unordered_map>

#include "format/checked_arithmetic.h"
#include "format/entry_fields.h"
#include "inspect/field_type.h"
#include "inspect/file_content.h"
#include "inspect/stored_value.h"
#include "vocabulary/field_types.h"

// The walk over a file's directories. It knows numbers and offsets and no tags but the four that
// point to directories.

namespace corvinex::inspect {

namespace {

// Directories, entries and pointer values may overlap, so that a file built for it has far more of
// them than bytes. Real files use at most 37 % of what is allowed here.
constexpr std::uint64_t leastTotal = 65'536;
constexpr std::uint64_t bytesPerItem = 4;

class Walk {
  public:
    Walk(FileContent& file, PointerRule rule)
        : file_(file),
          rule_(rule),
          keepsAll_(rule == PointerRule::Exact || file.container == Container::Jpeg),
          total_(std::min<std::uint64_t>(leastTotal + file.source.size() / bytesPerItem,
                                         pointer_state::lastPlace)) {}

    void run() {
        DirectoryRecord first;
        const Chain main = readChain(file_.header.firstOffset, first);
        file_.isFirstRefused = main.target == refusedDirectory;
        file_.mainDirectories = main.end;
        enter(main);
        while (!levels_.empty()) {
            step();
        }
    }

  private:
    /// Directories that were read one after the other; none when the offset led to one that was
    /// known, or to none.
    struct Chain {
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
        std::uint32_t target = Entry::noDirectory;  ///< what the offset led to
    };

    /// Where the walk stands in one chain, whose directories' pointers it follows.
    struct Level {
        std::uint32_t directory = 0;
        std::uint32_t end = 0;
        std::uint32_t entry = 0;  ///< in the directory: the next one to look at
        std::uint64_t value = 0;  ///< of the pointer before: the next one to follow
        std::uint64_t valueCount = 0;
        std::uint64_t firstValue = 0;  ///< number of values of the same tag before that pointer
        std::array<std::uint64_t, pointerTags.size()> values{};  ///< of each pointer tag so far
    };

    void enter(const Chain& chain) {
        if (chain.begin != chain.end) {
            levels_.push_back({.directory = chain.begin, .end = chain.end});
        }
    }

    /// Follows one value, or moves on to the next pointer.
    void step() {
        Level& level = levels_.back();
        if (level.value < level.valueCount) {
            followValue(level);
            return;
        }
        const DirectoryRecord& directory = file_.directories[level.directory].record();
        while (level.entry < directory.entryCount) {
            const std::uint32_t entry = directory.firstEntry + level.entry++;
            if (const auto* tag = findFollowedTag(file_.entries[entry].number())) {
                beginPointer(level, entry, static_cast<std::size_t>(tag - pointerTags.data()));
                return;
            }
        }
        level = {.directory = level.directory + 1, .end = level.end};
        if (level.directory == level.end) {
            levels_.pop_back();
        }
    }

    const PointerTag* findFollowedTag(std::uint16_t number) const {
        const PointerTag* tag = findPointerTag(number);
        const bool isFollowed =
            tag != nullptr && (rule_ == PointerRule::Exact || tag->kind == DirectoryKind::Sub ||
                               tag->kind == DirectoryKind::Exif);
        return isFollowed ? tag : nullptr;
    }

    bool isFollowed(const EntryRecord& entry, const DirectoryRecord& directory) const {
        if (entry.count == 0 || !isInFile(file_, entry)) {
            return false;
        }
        if (rule_ == PointerRule::Module) {
            return isKnownTypeCode(entry.type) && getElementWidth(entry.type) != 0;
        }
        const FieldTypeFact* type = findFieldType(entry.type);
        return !directory.isGarbled && type != nullptr && holdsIntegers(*type);
    }

    void beginPointer(Level& level, std::uint32_t entry, std::size_t tag) {
        EntryRecord record = file_.entries[entry].record();
        level.firstValue = level.values.at(tag);
        level.values.at(tag) = saturatingAdd(level.firstValue, record.count);
        level.value = level.valueCount = 0;
        DirectoryRecord directory = file_.directories[level.directory].record();
        if (!isFollowed(record, directory)) {
            return;
        }
        if (directory.depth == deepestLevel) {
            directory.isDepthRefused = true;
            file_.directories[level.directory] = Directory(file_, directory);
            return;
        }
        if (!take(record.count)) {
            record.targets = pointer_state::totalRefused;
        } else {
            record.targets = static_cast<std::uint32_t>(file_.targets.size());
            file_.targets.resize(file_.targets.size() + static_cast<std::size_t>(record.count),
                                 Entry::noDirectory);
            level.valueCount = record.count;
        }
        file_.entries[entry] = Entry(file_, record);
    }

    void followValue(Level& level) {
        const DirectoryRecord& parent = file_.directories[level.directory].record();
        const std::uint32_t entry = parent.firstEntry + level.entry - 1;
        const EntryRecord record = file_.entries[entry].record();
        const std::uint64_t index = level.value++;
        const std::optional<StoredInteger> value = rule_ == PointerRule::Exact
                                                       ? readInteger(file_, record, index)
                                                       : readPointerOfModule(file_, record, index);
        if (!value || value->isNegative || value->bits == 0) {
            return;
        }
        DirectoryRecord first;
        first.valueIndex = saturatingAdd(level.firstValue, index);
        first.parent = level.directory;
        first.pointer = entry;
        first.kind = findPointerTag(record.number)->kind;
        first.depth = static_cast<std::uint8_t>(parent.depth + 1);
        const Chain chain = readChain(value->bits, first);
        file_.targets[record.targets + static_cast<std::size_t>(index)] = chain.target;
        enter(chain);
    }

    /// Reads the directory at an offset and those behind it, as far as they are not known yet.
    Chain readChain(std::uint64_t offset, DirectoryRecord record) {
        Chain chain;
        chain.begin = chain.end = static_cast<std::uint32_t>(file_.directories.size());
        record.chainStart = chain.begin;
        record.chainIndex = 0;
        while (offset != 0) {
            record.offset = offset;
            const std::uint32_t target = readDirectory(record);
            if (record.chainIndex == 0) {
                chain.target = target;
            } else if (target == refusedDirectory) {
                DirectoryRecord last = file_.directories.back().record();
                last.isNextRefused = true;
                file_.directories.back() = Directory(file_, last);
            }
            if (target != chain.end) {
                break;  // known already, or not there
            }
            ++chain.end;
            ++record.chainIndex;
            offset = isImageKind(record.kind) ? file_.directories.back().record().next : 0;
        }
        return chain;
    }

    /// Index of the directory at record.offset: of a new one, which is then the last, or of one
    /// that was read before; noDirectory when its count does not lie in the file, refusedDirectory
    /// when it would pass the limit.
    std::uint32_t readDirectory(DirectoryRecord record) {
        if (const auto known = known_.find(record.offset); known != known_.end()) {
            return known->second;
        }
        const DirectoryLayout& layout = file_.layout;
        const std::uint64_t position = file_.positionOf(record.offset);
        const std::optional<std::uint64_t> told = readEntryCount(position);
        if (!told) {
            return Entry::noDirectory;
        }
        const std::uint64_t entriesStart = position + layout.entryCountSize;
        const std::uint64_t room = file_.source.size() - entriesStart;
        const std::uint64_t whole = std::min(*told, room / layout.entrySize);
        if (!take(saturatingAdd(whole, 1))) {
            return refusedDirectory;
        }
        const auto index = static_cast<std::uint32_t>(file_.directories.size());
        record.toldCount = *told;
        record.firstEntry = static_cast<std::uint32_t>(file_.entries.size());
        record.isCutOff =
            readEntries(record, index, entriesStart, static_cast<std::uint32_t>(whole)) < *told;
        record.isCut = record.isCutOff;
        if ((isImageKind(record.kind) || rule_ == PointerRule::Module) && !record.isCut) {
            const std::optional<std::uint64_t> next =
                readOffset(entriesStart + whole * layout.entrySize);
            record.next = next.value_or(0);
            record.isCut = !next;
        }
        file_.directories.emplace_back(file_, record);
        known_.emplace(record.offset, index);
        return index;
    }

    /// The number of entries that were read.
    std::uint32_t readEntries(DirectoryRecord& record, std::uint32_t directory,
                              std::uint64_t position, std::uint32_t count) {
        const auto entrySize = static_cast<std::size_t>(file_.layout.entrySize);
        if (keepsAll_) {
            makeRoom(count);
        }
        std::uint32_t read = 0;
        std::uint32_t unknown = 0;
        std::uint32_t blank = 0;
        while (read < count) {
            const std::size_t length =
                std::min<std::size_t>(buffer_.size() / entrySize, count - read);
            const std::span<unsigned char> block = std::span(buffer_).first(length * entrySize);
            if (!file_.source.read(position, block)) {
                break;  // the file has become shorter
            }
            position += block.size();
            read += static_cast<std::uint32_t>(length);
            for (std::size_t start = 0; start < block.size(); start += entrySize) {
                const auto bytes = block.subspan(start, entrySize);
                if (!keepsAll_ && findFollowedTag(loadEntryNumber(bytes, file_.swap)) == nullptr) {
                    continue;
                }
                const EntryRecord entry = parseEntry(bytes, directory);
                unknown += findFieldType(entry.type) == nullptr ? 1 : 0;
                blank += isBlank(entry) ? 1 : 0;
                file_.entries.emplace_back(file_, entry);
            }
        }
        record.entryCount = static_cast<std::uint32_t>(file_.entries.size()) - record.firstEntry;
        // Pixels and other data that are read as a directory tell types at random.
        record.isGarbled = unknown - blank > (record.entryCount - blank) / 2;
        return read;
    }

    /// For so many entries more, which the file holds, at once. What is reserved beyond them is no
    /// more than the file has room for, or than is there already, and costs nothing before it is
    /// used, where a copy to a larger place costs as much as the walk.
    void makeRoom(std::uint32_t count) {
        constexpr std::size_t growth = 4;
        std::vector<Entry>& entries = file_.entries;
        const std::size_t size = entries.size();
        if (count > entries.capacity() - size) {
            const std::uint64_t most = file_.source.size() / file_.layout.entrySize;
            entries.reserve(
                std::max({size + count, 2 * size,
                          static_cast<std::size_t>(std::min<std::uint64_t>(most, growth * size))}));
        }
    }

    EntryRecord parseEntry(std::span<const unsigned char> bytes, std::uint32_t directory) const {
        EntryRecord entry;
        entry.number = loadEntryNumber(bytes, file_.swap);
        entry.type = loadEntryType(bytes, file_.swap);
        entry.count = loadEntryCount(bytes, file_.layout.offsetSize, file_.swap);
        std::ranges::copy(
            std::as_bytes(bytes.subspan(static_cast<std::size_t>(file_.layout.valueFieldPosition))),
            entry.field.begin());
        entry.directory = directory;
        entry.targets = pointer_state::notFollowed;
        return entry;
    }

    std::optional<std::uint64_t> readEntryCount(std::uint64_t position) const {
        if (file_.isBig()) {
            return file_.source.number<std::uint64_t>(position, file_.swap);
        }
        return file_.source.number<std::uint16_t>(position, file_.swap);
    }

    std::optional<std::uint64_t> readOffset(std::uint64_t position) const {
        if (file_.isBig()) {
            return file_.source.number<std::uint64_t>(position, file_.swap);
        }
        return file_.source.number<std::uint32_t>(position, file_.swap);
    }

    /// Whether so many items more are allowed; they are counted then.
    bool take(std::uint64_t items) {
        if (items > total_ - used_) {
            return false;
        }
        used_ += items;
        return true;
    }

    FileContent& file_;
    PointerRule rule_;
    bool keepsAll_;  ///< entries, or else those of pointers that are followed
    std::uint64_t total_;
    std::uint64_t used_ = 0;
    std::vector<Level> levels_;
    std::pmr::monotonic_buffer_resource knownMemory_;
    std::pmr::unordered_map<std::uint64_t, std::uint32_t> known_{&knownMemory_};
    std::array<unsigned char, 16'380> buffer_{};  // a whole number of entries of either size
};

}  // namespace

const PointerTag* findPointerTag(std::uint16_t number) noexcept {
    const auto* row = std::ranges::find(pointerTags, number, &PointerTag::number);
    return row == pointerTags.end() ? nullptr : row;
}

void readDirectories(FileContent& file, PointerRule rule) {
    if (file.header.byteOrder) {
        Walk(file, rule).run();
    }
}

}  // namespace corvinex::inspect
