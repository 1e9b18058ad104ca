#include <algorithm>
#include <array>
#include <span>
#include <tuple>
#include <utility>
#include <vector>

#include "format/checked_arithmetic.h"
#include "inspect/field_type.h"
#include "inspect/rules/directory_rules.h"
#include "inspect/stored_value.h"

namespace corvinex::inspect {

namespace {

/// The number of an entry that is not blank.
struct NumberedEntry {
    std::uint16_t number = 0;
    std::uint32_t place = 0;  ///< among all entries of the directory
};

/// Looks at the entries of one directory by themselves.
class EntryCheck {
  public:
    explicit EntryCheck(RuleContext& context)
        : context_(context),
          file_(context.file),
          isGarbled_(context.directory->record().isGarbled) {}

    void run() {
        noteOdd(context_.directory->record().offset);
        for (place_ = 0; place_ < context_.entries.size(); ++place_) {
            const EntryRecord& entry = context_.entries[place_].record();
            if (isBlank(entry)) {
                ++blank_;
            } else {
                ascends_ = ascends_ && int{entry.number} > last_;
                last_ = entry.number;
                checkEntry(entry);
            }
        }
        context_.isBlank = blank_ == context_.entries.size();
        if (blank_ != 0) {
            context_.findings.add(Rule::BlankEntry, {}, blank_);
        }
        checkCount();
        if (isGarbled_) {
            return;
        }
        if (!ascends_) {
            checkOrder();
        }
        if (oddOffsets_ != 0) {
            context_.findings.add(Rule::NotAligned, {}, oddOffsets_, firstOddOffset_);
        }
    }

  private:
    [[nodiscard]] FindingPlace here(const EntryRecord& entry) const {
        return {entry.number, place_};
    }

    void noteOdd(std::uint64_t offset) {
        if (offset % 2 != 0 && oddOffsets_++ == 0) {
            firstOddOffset_ = offset;
        }
    }

    void checkCount() {
        const std::uint64_t told = context_.directory->toldCount();
        if (told == 0 || told == blank_) {
            context_.findings.add(
                isImageKind(context_.kind()) ? Rule::DirectoryEmpty : Rule::SubdirectoryEmpty, {});
        }
    }

    void checkEntry(const EntryRecord& entry) {
        const FieldTypeFact* type = findFieldType(entry.type);
        bool isSound = false;
        if (type == nullptr) {
            context_.findings.add(Rule::UnknownFieldType, here(entry), entry.type);
        } else {
            checkBigType(entry);
            isSound = entry.count == 0 ? checkZeroCount(entry) : checkValue(entry, *type);
        }
        if (isGarbled_) {
            return;
        }
        if (const ListedTag* tag = context_.tags.note(entry, place_, isSound)) {
            checkListedTag(context_, *tag, {&entry, place_});
        }
    }

    void checkBigType(const EntryRecord& entry) {
        constexpr std::uint16_t firstBigType = 16;
        constexpr std::uint16_t lastBigType = 18;
        if (!isGarbled_ && !file_.isBig() && entry.type >= firstBigType &&
            entry.type <= lastBigType) {
            context_.findings.add(Rule::BigTypeInClassic, here(entry), entry.type);
        }
    }

    bool checkZeroCount(const EntryRecord& entry) {
        if (!isGarbled_) {
            context_.findings.add(Rule::ZeroCount, here(entry));
        }
        return false;
    }

    /// Whether the value lies in the file.
    bool checkValue(const EntryRecord& entry, const FieldTypeFact& type) {
        const std::uint64_t length = saturatingMultiply(entry.count, type.width);
        const bool isInline = length <= file_.layout.offsetSize;
        const std::uint64_t offset = isInline ? 0 : getOffset(file_, entry);
        if (!isInline && !liesWithin(offset, length, file_.end())) {
            context_.findings.add(Rule::ValuePastEnd, here(entry), offset, length);
            return false;
        }
        if (isGarbled_) {
            return true;
        }
        if (!isInline) {
            checkPlace(entry, {offset, offset + length});
        }
        if (entry.type == static_cast<std::uint16_t>(FieldType::Ascii) && !endsInZero(entry)) {
            context_.findings.add(Rule::AsciiNotTerminated, here(entry), entry.count);
        }
        return true;
    }

    void checkPlace(const EntryRecord& entry, OffsetRange range) {
        noteOdd(range.start);
        if (file_.exifSegment && range.end > file_.blockEnd()) {
            context_.findings.add(Rule::OutsideExifBlock, here(entry), range.start, range.end);
        }
        if (!context_.ranges.add({range.start, range.end, context_.index, entry.number, false})) {
            context_.reportLimit(Limit::Ranges, entry.number);
        }
    }

    [[nodiscard]] bool endsInZero(const EntryRecord& entry) const {
        std::array<std::byte, 1> last{};
        return !readValueBytes(file_, entry, entry.count - 1, last) || last[0] == std::byte{0};
    }

    /// Entries shall ascend by number, each number once.
    void checkOrder() {
        std::vector<NumberedEntry> entries;
        entries.reserve(context_.entries.size());
        for (std::uint32_t place = 0; place < context_.entries.size(); ++place) {
            const EntryRecord& entry = context_.entries[place].record();
            if (!isBlank(entry)) {
                entries.push_back({entry.number, place});
            }
        }
        std::vector<NumberedEntry> sorted = entries;
        std::ranges::sort(sorted, {}, [](const NumberedEntry& entry) {
            return std::tuple(entry.number, entry.place);
        });
        reportDisorder(entries, sorted);
        reportDuplicates(sorted);
    }

    /// Reports the first entry with a lower number than the one before that no earlier one has.
    void reportDisorder(std::span<const NumberedEntry> entries,
                        std::span<const NumberedEntry> sorted) {
        for (std::size_t i = 1; i < entries.size(); ++i) {
            const NumberedEntry& entry = entries[i];
            if (entry.number >= entries[i - 1].number) {
                continue;
            }
            const auto first =
                std::ranges::lower_bound(sorted, entry.number, {}, &NumberedEntry::number);
            if (first->place == entry.place) {
                const bool isImageOfTiff = isImageKind(context_.kind()) && !context_.isJpeg();
                context_.findings.add(
                    isImageOfTiff ? Rule::EntriesOutOfOrder : Rule::ExifEntriesOutOfOrder,
                    {entry.number, entry.place}, entries[i - 1].number);
                return;
            }
        }
    }

    /// Reports each number that several entries have, at the place of the first.
    void reportDuplicates(std::span<const NumberedEntry> sorted) {
        while (!sorted.empty()) {
            const NumberedEntry first = sorted.front();
            const auto end = std::ranges::find_if_not(
                sorted, [&](const NumberedEntry& other) { return other.number == first.number; });
            const auto times = static_cast<std::size_t>(end - sorted.begin());
            if (times > 1) {
                context_.findings.add(Rule::DuplicateTag, {first.number, first.place}, times);
            }
            sorted = sorted.subspan(times);
        }
    }

    RuleContext& context_;
    const FileContent& file_;
    bool isGarbled_;
    std::uint32_t place_ = 0;
    std::uint64_t blank_ = 0;
    std::uint64_t oddOffsets_ = 0;
    std::uint64_t firstOddOffset_ = 0;
    int last_ = -1;  ///< number of the entry before
    bool ascends_ = true;
};

}  // namespace

void checkEntries(RuleContext& context) {
    EntryCheck(context).run();
}

}  // namespace corvinex::inspect
