#include "tests/agreement/agreement.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

#include "tests/agreement/expected_value.h"
#include "tests/support/module_call.h"
#include "vocabulary/tag_table.h"

namespace test {

namespace {

using corvinex::inspect::Container;
using corvinex::inspect::Directory;
using corvinex::inspect::DirectoryKind;
using corvinex::inspect::Entry;
using corvinex::inspect::File;
using corvinex::inspect::Value;

constexpr std::uint16_t colorMap = 320;
constexpr std::uint16_t subIfds = 330;
constexpr std::uint16_t exifPointer = 34665;
constexpr std::uint16_t gpsPointer = 34853;
constexpr std::uint16_t interopPointer = 40965;
constexpr std::uint16_t sampleFormat = 339;
constexpr std::uint16_t iccProfile = 34675;
constexpr std::uint16_t imageSourceData = 37724;
constexpr std::uint16_t grayResponseUnit = 290;
constexpr std::uint16_t depthFar = 51179;

/// Of the file as a whole, or worked out from several tags: no entry holds them.
constexpr std::array<std::string_view, 10> fieldsOfTheFile{
    "Filename", "FileModDate", "FileSize",        "Format",    "FormatVersion",
    "BitDepth", "ColorType",   "FormatSignature", "ByteOrder", "Offset"};

/// The value of a result, and how it is compared.
enum class Outcome { Equal, Bent, Differs };

bool areSameNumbers(std::span<const double> left, std::span<const double> right) {
    return std::ranges::equal(left, right, [](double a, double b) {
        return (std::isnan(a) && std::isnan(b)) || (a == b && std::signbit(a) == std::signbit(b));
    });
}

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::u16string widened(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

/// Whether the result keeps what an entry tells: types that are none, and those of directories on
/// tags that are no pointers, have their entries dropped.
bool isKept(const Entry& entry) {
    using enum corvinex::inspect::FieldType;
    const auto type = entry.type();
    return type && *type != Ifd && *type != Ifd8 && *type != Utf8 && entry.isInFile();
}

/// The size of an image is 0 where its tag holds a text or nothing.
bool isSizeWithoutNumber(const Entry& entry, const zxArray& value) {
    constexpr std::uint16_t width = 256;
    constexpr std::uint16_t height = 257;
    using corvinex::inspect::FieldType;
    return (entry.number() == width || entry.number() == height) &&
           (entry.type() == FieldType::Ascii || entry.count() == 0) &&
           host::classOf(value) == host::ValueClass::Double && numberOf(value) == 0;
}

class Comparison {
  public:
    Comparison(const File& file, std::string name, Agreement& agreement)
        : file_(file), name_(std::move(name)), agreement_(agreement) {}

    /// A set of the result and the first directory of its chain.
    void compareSet(const zxArray& set, std::size_t first);

  private:
    void compareDirectory(const zxArray& set, std::size_t element, const Directory& directory);
    void compareField(const zxArray& value, const std::string& field, const Directory& directory);
    void comparePointer(const zxArray& value, const Entry& entry);
    void compareTarget(const zxArray& set, const Entry& pointer, std::size_t target);
    void compareSubImages(const zxArray& cells, const Entry& entry);
    void compareUnknownTags(const zxArray& records, const Directory& directory);
    Outcome compareValue(const zxArray& value, const Entry& entry);
    Outcome compareNumbers(std::span<const double> numbers, const Entry& entry,
                           const Value& inspected);
    Outcome compareText(std::u16string_view text, const Entry& entry, const Value& inspected);
    Outcome bend(const char* kind);
    void differ(const Directory& directory, const std::string& what);

    const File& file_;
    std::string name_;
    Agreement& agreement_;
};

Outcome Comparison::bend(const char* kind) {
    ++agreement_.bends[kind];
    return Outcome::Bent;
}

void Comparison::differ(const Directory& directory, const std::string& what) {
    constexpr std::size_t mostLines = 30;
    ++agreement_.differing;
    if (agreement_.differences.size() < mostLines) {
        agreement_.differences.push_back(name_ + ": " + directory.path() + ": " + what);
    }
}

void Comparison::compareSet(const zxArray& set, std::size_t first) {
    if (host::classOf(set) != host::ValueClass::Struct) {
        return;  // empty: no directory was read
    }
    const auto directories = file_.directories();
    const auto start = directories[first].record();
    const auto isInChain = [&start](const Directory& directory) {
        return directory.record().chainStart == start.chainStart;
    };
    if (file_.container() == corvinex::inspect::Container::Jpeg &&
        host::sizeOf(set).rows <
            static_cast<std::size_t>(std::ranges::count_if(directories, isInChain))) {
        bend("chain of a JPEG, of which directories without a field are left out");
        return;
    }
    for (std::size_t i = 0; i < host::sizeOf(set).rows; ++i) {
        const std::size_t index = first + i;
        const bool isOfTheChain = index < directories.size() &&
                                  directories[index].record().chainStart == start.chainStart &&
                                  directories[index].record().chainIndex == start.chainIndex + i;
        if (!isOfTheChain) {
            // The inspection reads each directory once, and no next offsets of the other kinds.
            bend("chain that comes back, or that is not followed in a directory of its kind");
            return;
        }
        compareDirectory(set, i, directories[index]);
    }
}

void Comparison::compareDirectory(const zxArray& set, std::size_t element,
                                  const Directory& directory) {
    const auto names = host::fieldNamesOf(set);
    for (std::size_t field = 0; field < names.size(); ++field) {
        const zxArray* value = host::fieldAt(set, element, field);
        const bool isTag =
            std::ranges::find(fieldsOfTheFile, names[field]) == fieldsOfTheFile.end();
        if (value == nullptr) {
            continue;
        }
        if (names[field] == "UnknownTags") {
            compareUnknownTags(*value, directory);
        } else if (names[field] == "Offset") {
            if (numberOf(*value) != static_cast<double>(directory.offset())) {
                differ(directory, "another directory stands here");
                return;
            }
            ++agreement_.equal;
        } else if (isTag) {
            compareField(*value, names[field], directory);
        }
    }
}

void Comparison::compareField(const zxArray& value, const std::string& field,
                              const Directory& directory) {
    bool isThere = false;
    bool isLast = true;
    const auto entries = directory.entries();
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        const std::string_view called =
            entry->fieldName().empty() ? entry->name() : entry->fieldName();
        if (called != field) {
            continue;
        }
        if (entry->isPointer()) {
            comparePointer(value, *entry);
            return;
        }
        const Outcome outcome = compareValue(value, *entry);
        if (outcome == Outcome::Equal) {
            ++agreement_.equal;
        }
        if (outcome != Outcome::Differs) {
            if (!isLast) {
                bend("the last of equal tags that can be read wins, others are dropped");
            }
            return;
        }
        if (isSizeWithoutNumber(*entry, value)) {
            bend("size of the image, whose tag has no number");
            return;
        }
        isThere = isThere || isKept(*entry);
        isLast = false;
    }
    const bool isMain =
        directory.kind() == DirectoryKind::Main || directory.kind() == DirectoryKind::Sub;
    if (!isThere && isMain) {
        bend("default of a baseline tag that is not there or cannot be read");
        return;
    }
    differ(directory, field + " has another value");
}

/// The kind of directory that a pointer makes.
DirectoryKind kindBehind(const Entry& pointer) {
    switch (pointer.number()) {
        case exifPointer:
            return DirectoryKind::Exif;
        case gpsPointer:
            return DirectoryKind::Gps;
        case interopPointer:
            return DirectoryKind::Interop;
        default:
            return DirectoryKind::Sub;
    }
}

void Comparison::compareTarget(const zxArray& set, const Entry& pointer, std::size_t target) {
    if (file_.directories()[target].kind() != kindBehind(pointer)) {
        bend("directory that pointers of several kinds lead to; the inspection reads it once");
        return;
    }
    compareSet(set, target);
}

void Comparison::comparePointer(const zxArray& value, const Entry& entry) {
    const auto isEqual = [&entry](const Entry& other) { return other.number() == entry.number(); };
    if (std::ranges::count_if(entry.directory().entries(), isEqual) > 1) {
        bend("equal pointers, of which the last one that is followed wins");
        return;
    }
    if (entry.number() == subIfds && host::classOf(value) == host::ValueClass::Cell) {
        compareSubImages(value, entry);
        return;
    }
    const auto targets = entry.targets();
    if (targets.empty() || targets.front() >= file_.directories().size()) {
        bend("pointer that only one of the two follows");
        return;
    }
    if (targets.size() > 1) {
        bend("several values of a pointer to one directory, of which one wins");
        return;
    }
    compareTarget(value, entry, targets.front());
}

void Comparison::compareSubImages(const zxArray& cells, const Entry& entry) {
    std::vector<std::size_t> targets;
    for (const std::uint32_t target : entry.targets()) {
        if (target < file_.directories().size()) {
            targets.push_back(target);
        }
    }
    // 64-bit pointers are taken as halves, and a set without directories is left out.
    const std::size_t sets = host::elementCountOf(cells);
    if (sets != targets.size()) {
        bend("sub-images of 64-bit pointers, or of targets that yield nothing");
        return;
    }
    for (std::size_t i = 0; i < sets; ++i) {
        compareTarget(*host::cellAt(cells, i), entry, targets[i]);
    }
}

void Comparison::compareUnknownTags(const zxArray& records, const Directory& directory) {
    auto entry = directory.entries().begin();
    const auto end = directory.entries().end();
    for (std::size_t i = 0; i < host::sizeOf(records).rows; ++i) {
        const double number = numberOf(fieldOf(records, "ID", i));
        const double offset = numberOf(fieldOf(records, "Offset", i));
        Outcome outcome = Outcome::Differs;
        // Entries of which the result keeps nothing stand between.
        for (; outcome == Outcome::Differs && entry != end; ++entry) {
            if (entry->number() != number) {
                continue;
            }
            const auto place = entry->offset();
            const double told =
                place ? static_cast<double>(*place - file_.headerOffset().value_or(0)) : 0;
            if (told == offset) {
                outcome = compareValue(fieldOf(records, "Value", i), *entry);
            }
        }
        if (outcome == Outcome::Equal) {
            ++agreement_.equal;
        } else if (outcome == Outcome::Differs) {
            differ(directory, "unknown tag " + std::to_string(number) + " has another value");
            return;
        }
    }
}

Outcome Comparison::compareValue(const zxArray& value, const Entry& entry) {
    if (entry.count() == 0) {
        const bool isEmpty = host::elementCountOf(value) == 0;
        return isEmpty ? bend("count of 0 is an empty value") : Outcome::Differs;
    }
    const auto inspected = entry.value();
    if (!inspected) {
        return Outcome::Differs;
    }
    switch (host::classOf(value)) {
        case host::ValueClass::Double:
            return compareNumbers(host::doublesOf(value), entry, *inspected);
        case host::ValueClass::Char:
            return compareText(host::textOf(value), entry, *inspected);
        case host::ValueClass::Uint8: {
            const auto bytes = host::bytesOf(value);
            // As many bytes as the entry has elements, of whatever type.
            const bool isEqual =
                entry.number() == imageSourceData && bytes.size() <= inspected->bytes().size() &&
                std::ranges::equal(bytes, inspected->bytes().first(bytes.size()), {}, {},
                                   [](std::byte b) { return std::to_integer<unsigned char>(b); });
            return isEqual ? Outcome::Equal : Outcome::Differs;
        }
        default:
            return entry.number() == sampleFormat ? bend("words without their codes")
                                                  : Outcome::Differs;
    }
}

Outcome Comparison::compareNumbers(std::span<const double> numbers, const Entry& entry,
                                   const Value& inspected) {
    auto expected = resultNumbersOf(inspected);
    if (!expected) {
        return numbers.empty() && resultTextOf(inspected)->empty()
                   ? bend("text of nothing but zeros")
                   : Outcome::Differs;
    }
    if (entry.number() == colorMap && !entry.fieldName().empty()) {
        expected->resize(expected->size() / 3 * 3);
        std::ranges::transform(*expected, expected->begin(), [](double n) { return n / 65535; });
        return areSameNumbers(numbers, *expected) ? bend("colour map, scaled to 1")
                                                  : Outcome::Differs;
    }
    if (areSameNumbers(numbers, *expected)) {
        return Outcome::Equal;
    }
    if (entry.number() == imageSourceData && entry.fieldName().empty() && numbers.empty()) {
        return bend("bytes of layers, which are no value where their tag has no name");
    }
    switch (entry.number()) {
        case grayResponseUnit:
            return bend("unit of the gray response, a factor instead of its code");
        case depthFar:
            return bend("farthest depth, infinite where the denominator is 0");
        case iccProfile: {
            const auto place = entry.offset();
            const double offset =
                place ? static_cast<double>(*place - file_.headerOffset().value_or(0)) : 0;
            return numbers.size() == 1 && numbers.front() == offset
                       ? bend("colour profile, told by its offset")
                       : Outcome::Differs;
        }
        default:
            return Outcome::Differs;
    }
}

Outcome Comparison::compareText(std::u16string_view text, const Entry& entry,
                                const Value& inspected) {
    const auto expected = resultTextOf(inspected);
    if (!expected) {
        const bool isDecoded = entry.number() == sampleFormat ||
                               corvinex::findTag(entry.number()).decoder != corvinex::Decoder::None;
        return isDecoded ? bend("words without their codes") : Outcome::Differs;
    }
    if (text == widened(*expected)) {
        return Outcome::Equal;
    }
    if (!isAscii(*expected)) {
        return bend("text read in the encoding of the locale");
    }
    const bool isCut =
        entry.fieldName().empty() && text == widened(expected->substr(0, expected->find('\0')));
    return isCut ? bend("text of an unknown tag, cut at its first zero") : Outcome::Differs;
}

}  // namespace

void compareResult(const zxArray& output, const File& file, const std::string& name,
                   Agreement& agreement) {
    if (host::classOf(output) != host::ValueClass::Struct || file.directories().empty()) {
        return;
    }
    Comparison(file, name, agreement).compareSet(output, 0);
}

}  // namespace test
