#include <algorithm>
#include <array>
#include <functional>

#include "format/checked_arithmetic.h"
#include "inspect/field_type.h"
#include "inspect/stored_value.h"
#include "inspect/structure_findings.h"

namespace corvinex::inspect {

namespace {

using Arguments = std::vector<Argument>;

/// Odd offsets of one directory.
struct OddOffsets {
    std::uint64_t count = 0;
    std::uint64_t first = 0;
    void note(std::uint64_t offset) {
        if (offset % 2 != 0 && count++ == 0) {
            first = offset;
        }
    }
};

bool endsInZero(const FileContent& file, const EntryRecord& entry) {
    std::array<std::byte, 1> last{};
    return !readValueBytes(file, entry, entry.count - 1, last) || last[0] == std::byte{0};
}

/// What there is to say of one entry with a known type.
void findInValue(const FileContent& file, const EntryRecord& entry, bool isGarbled,
                 OddOffsets& oddOffsets, FindingList& findings) {
    const std::uint64_t length = getByteCount(file, entry);
    const std::uint64_t offset = getOffset(file, entry);
    if (!isInFile(file, entry)) {
        findings.add(Rule::ValuePastEnd, entry.number, [&] { return Arguments{offset, length}; });
        return;
    }
    if (isGarbled) {
        return;
    }
    if (!isInline(file, entry)) {
        oddOffsets.note(offset);
        if (file.exifSegment && offset + length > file.blockEnd()) {
            findings.add(Rule::OutsideExifBlock, entry.number, [&] {
                return Arguments{offset, offset + length};
            });
        }
    }
    if (static_cast<FieldType>(entry.type) == FieldType::Ascii && !endsInZero(file, entry)) {
        findings.add(Rule::AsciiNotTerminated, entry.number,
                     [&] { return Arguments{entry.count}; });
    }
}

void findInEntry(const FileContent& file, const EntryRecord& entry, bool isGarbled,
                 OddOffsets& oddOffsets, FindingList& findings) {
    if (findFieldType(entry.type) == nullptr) {
        findings.add(Rule::UnknownFieldType, entry.number,
                     [&] { return Arguments{std::uint64_t{entry.type}}; });
        return;
    }
    constexpr std::uint16_t firstBigType = 16;
    constexpr std::uint16_t lastBigType = 18;
    if (!isGarbled && !file.isBig() && entry.type >= firstBigType && entry.type <= lastBigType) {
        findings.add(Rule::BigTypeInClassic, entry.number,
                     [&] { return Arguments{std::uint64_t{entry.type}}; });
    }
    if (entry.count != 0) {
        findInValue(file, entry, isGarbled, oddOffsets, findings);
    } else if (!isGarbled) {
        findings.add(Rule::ZeroCount, entry.number);
    }
}

/// Numbers of the entries that are not blank, in file order.
std::vector<std::uint16_t> numbersOf(const Directory& directory) {
    std::vector<std::uint16_t> numbers;
    numbers.reserve(directory.entries().size());
    for (const Entry& entry : directory.entries()) {
        if (!isBlank(entry.record())) {
            numbers.push_back(entry.number());
        }
    }
    return numbers;
}

/// Entries shall ascend by number, each number once.
void findInOrder(const FileContent& file, const Directory& directory, FindingList& findings) {
    const std::vector<std::uint16_t> numbers = numbersOf(directory);
    const auto ascends = [](std::uint16_t left, std::uint16_t right) { return left < right; };
    if (std::ranges::adjacent_find(numbers, std::not_fn(ascends)) == numbers.end()) {
        return;
    }
    std::vector<std::uint32_t> times(std::size_t{1} << 16U);
    bool isTold = false;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const std::uint16_t number = numbers[i];
        if (!isTold && i > 0 && number < numbers[i - 1] && times[number] == 0) {
            const bool isImageOfTiff = isImageKind(directory.kind()) && !file.segments;
            findings.add(isImageOfTiff ? Rule::EntriesOutOfOrder : Rule::ExifEntriesOutOfOrder,
                         number, [&] { return Arguments{std::uint64_t{numbers[i - 1]}}; });
            isTold = true;
        }
        ++times[number];
    }
    for (const std::uint16_t number : numbers) {
        if (times[number] > 1) {
            findings.add(Rule::DuplicateTag, number,
                         [&] { return Arguments{std::uint64_t{times[number]}}; });
            times[number] = 0;  // told once, at its first place
        }
    }
}

}  // namespace

void findInEntries(const FileContent& file, const Directory& directory, FindingList& findings) {
    const bool isGarbled = directory.record().isGarbled;
    OddOffsets oddOffsets;
    oddOffsets.note(directory.record().offset);
    std::uint64_t blank = 0;
    for (const Entry& entry : directory.entries()) {
        if (isBlank(entry.record())) {
            ++blank;
        } else {
            findInEntry(file, entry.record(), isGarbled, oddOffsets, findings);
        }
    }
    if (blank != 0) {
        findings.add(Rule::BlankEntry, {}, [&] { return Arguments{blank}; });
    }
    if (isGarbled) {
        return;
    }
    if (directory.toldCount() == 0 || directory.toldCount() == blank) {
        findings.add(isImageKind(directory.kind()) ? Rule::DirectoryEmpty
                                                   : Rule::SubdirectoryEmpty);
    }
    findInOrder(file, directory, findings);
    if (oddOffsets.count != 0) {
        findings.add(Rule::NotAligned, {}, [&] {
            return Arguments{oddOffsets.count, oddOffsets.first};
        });
    }
}

}  // namespace corvinex::inspect
