#include "tool/file_difference.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "inspect/interpretation.h"
#include "inspect/reading/number_text.h"
#include "inspect/value_budget.h"
#include "tool/directory_pairs.h"
#include "tool/display_width.h"
#include "tool/entry_view.h"
#include "tool/file_phrase.h"
#include "tool/reading_order.h"
#include "tool/text_display.h"
#include "tool/text_sinks.h"
#include "tool/value_cell.h"
#include "tool/value_difference.h"
#include "vocabulary/registry.h"

namespace tool {
namespace {

namespace reading = corvinex::inspect::reading;
namespace registry = corvinex::registry;
using corvinex::inspect::Directory;
using corvinex::inspect::Entry;
using corvinex::inspect::File;
using corvinex::inspect::Value;
using corvinex::inspect::ValueBudget;

constexpr std::size_t numberColumns = 5;
constexpr std::size_t gap = 2;
constexpr std::size_t nameColumns = 26;
constexpr std::size_t leastValueColumns = 24;
constexpr std::string_view unknownName = "(unknown)";

/// Whether a value tells where something lies in the file, which a copy of it tells otherwise.
bool tellsPositions(const Entry& entry) {
    const registry::TagFact* const fact =
        registry::findTag(entry.directory().kind(), entry.number());
    const bool isTold = fact != nullptr &&
                        (fact->encoding == registry::Encoding::Pointer ||
                         (fact->encoding == registry::Encoding::Offsets && fact->unit != "byte"));
    return isTold || entry.isPointer();
}

/// Whether two values are comments of the same text. In UNICODE its bytes hang on the byte order of
/// the file, or on that of the writer.
bool isSameComment(const Entry& left, const Value& leftValue, const Entry& right,
                   const Value& rightValue) {
    const registry::TagFact* const fact = registry::findTag(left.directory().kind(), left.number());
    if (fact == nullptr || fact->encoding != registry::Encoding::Comment) {
        return false;
    }
    const auto one = corvinex::inspect::interpret(left, leftValue);
    const auto other = corvinex::inspect::interpret(right, rightValue);
    return !one.texts.empty() && one.texts == other.texts && one.charset == other.charset &&
           one.rest.empty() && other.rest.empty();
}

/// How two entries of one number differ.
struct EntryDifference {
    bool isLeftOut = false;                 ///< a value was not compared
    std::optional<ValueDifference> values;  ///< nothing when it is not the values
};

/// One of the two files.
struct Side {
    explicit Side(const NamedFile& named)
        : file(named.file), name(named.name), compared(file.size()), shown(file.size()) {}

    const File& file;
    std::string_view name;
    ValueBudget compared;
    ValueBudget shown;
};

/// Compares two files and writes what differs.
class Differences {
  public:
    Differences(std::ostream& out, const NamedFile& left, const NamedFile& right,
                const DifferenceView& view)
        : sink_(out), left_(left), right_(right), view_(view) {}

    DifferenceCount write() {
        const DirectoryPairs pairs = pairDirectories(left_.file, right_.file);
        const std::span<const Directory> lefts = left_.file.directories();
        const std::span<const Directory> rights = right_.file.directories();
        for (const std::uint32_t index : readingOrder(left_.file)) {
            const std::uint32_t other = pairs.ofLeft[index];
            compareDirectories(lefts[index].path(), &lefts[index],
                               other == DirectoryPairs::none ? nullptr : &rights[other]);
        }
        for (const std::uint32_t index : readingOrder(right_.file)) {
            if (!pairs.isPaired[index]) {
                compareDirectories(rights[index].path(), nullptr, &rights[index]);
            }
        }
        return count_;
    }

  private:
    /// The entries to compare by ascending number, those of one number as the file has them.
    [[nodiscard]] std::vector<const Entry*> entriesOf(const Directory* directory,
                                                      std::string_view path) const {
        std::vector<const Entry*> entries;
        if (directory == nullptr) {
            return entries;
        }
        for (const Entry& entry : directory->entries()) {
            if (view_.tags.contains(entry, path) &&
                !(view_.ignored && view_.ignored->contains(entry, path))) {
                entries.push_back(&entry);
            }
        }
        std::ranges::stable_sort(entries, {}, &Entry::number);
        return entries;
    }

    void compareDirectories(const std::string& path, const Directory* left,
                            const Directory* right) {
        const std::vector<const Entry*> lefts = entriesOf(left, path);
        const std::vector<const Entry*> rights = entriesOf(right, path);
        const Directory* const only = left == nullptr ? right : right == nullptr ? left : nullptr;
        if (only != nullptr && !view_.isSelection) {
            // One whose tags are all ignored is ignored with them.
            if (!lefts.empty() || !rights.empty() || only->entries().empty()) {
                writeDirectory(left == nullptr ? right_ : left_, *only, path);
            }
            return;
        }
        heading_ = path;
        auto one = lefts.begin();
        auto other = rights.begin();
        while (one != lefts.end() || other != rights.end()) {
            const bool isOnlyLeft = other == rights.end() ||
                                    (one != lefts.end() && (*one)->number() < (*other)->number());
            const bool isOnlyRight =
                !isOnlyLeft && (one == lefts.end() || (*other)->number() < (*one)->number());
            if (!isOnlyLeft && !isOnlyRight) {
                compareEntries(**one++, **other++);
                continue;
            }
            beginDifference();
            sink_.write(isOnlyLeft ? rowOf(left_, **one++) : rowOf(right_, **other++));
        }
    }

    void compareEntries(const Entry& left, const Entry& right) {
        const std::optional<EntryDifference> difference = differenceBetween(left, right);
        if (!difference) {
            return;
        }
        if (difference->isLeftOut) {
            ++count_.leftOut;
            return;
        }
        beginDifference();
        const std::string one = rowOf(left_, left);
        const std::string other = rowOf(right_, right);
        sink_.write(one);
        sink_.write(other);
        if (difference->values && isSameText(one, other)) {
            writeNote(left, right, *difference->values);
        }
    }

    std::optional<EntryDifference> differenceBetween(const Entry& left, const Entry& right) {
        const bool isComparable =
            left.count() != 0 && right.count() != 0 && left.isInFile() && right.isInFile();
        if (!isComparable || (tellsPositions(left) && tellsPositions(right))) {
            const bool isSame =
                left.count() == right.count() && left.isInFile() == right.isInFile();
            return isSame ? std::nullopt : std::optional(EntryDifference());
        }
        // Both are taken, so that what fits does not hang on which file is the first.
        const bool fitsLeft = left_.compared.take(left.byteCount());
        const bool fitsRight = right_.compared.take(right.byteCount());
        if (!fitsLeft || !fitsRight) {
            return EntryDifference{.isLeftOut = true, .values = {}};
        }
        const std::optional<Value> one = left.value();
        const std::optional<Value> other = right.value();
        if (!one || !other) {
            return EntryDifference{.isLeftOut = true, .values = {}};
        }
        auto difference = differenceOf(*one, *other);
        if (difference && isSameComment(left, *one, right, *other)) {
            difference.reset();
        }
        return difference ? std::optional(EntryDifference{.isLeftOut = false, .values = difference})
                          : std::nullopt;
    }

    /// Before the first difference of all stand the names of the files, before the first one of a
    /// directory its path.
    void beginDifference() {
        writeNames();
        ++count_.differences;
        if (!heading_.empty()) {
            sink_.write('\n' + view_.terminal.painted(Ink::Heading, heading_) + ":\n");
            heading_.clear();
            isInList_ = false;
        }
    }

    void writeNames() {
        if (count_.differences == 0) {
            for (const Side* const side : {&left_, &right_}) {
                const std::string sign(3, signOf(*side));
                sink_.write(view_.terminal.painted(inkOf(*side), sign) + ' ' +
                            view_.terminal.painted(Ink::Heading, visibleText(side->name)) + '\n');
            }
        }
    }

    void writeDirectory(Side& side, const Directory& directory, const std::string& path) {
        writeNames();
        ++count_.differences;
        // Those that follow each other stand in a list.
        sink_.write(std::exchange(isInList_, true) ? "" : "\n");
        std::string text = phraseOf(side.file, directory, &side.shown);
        text += ", " + reading::countText(directory.entries().size(), "entry", "entries");
        const std::string start = std::string(1, signOf(side)) + ' ' + path + ": ";
        writeText(side, start, text);
    }

    /// An entry behind the sign of its file.
    [[nodiscard]] std::string rowOf(Side& side, const Entry& entry) {
        std::string row;
        StringSink sink(row);
        const std::string number = std::to_string(entry.number());
        const std::string_view name = entry.name().empty() ? unknownName : entry.name();
        std::string head(1, signOf(side));
        head.append(1 + numberColumns - number.size(), ' ').append(number).append(gap, ' ');
        const std::size_t nameColumn = head.size();
        head.append(name).append(nameColumns - std::min(nameColumns, name.size()), ' ');
        head.append(gap, ' ');
        std::size_t columns = head.size();
        const std::size_t width = view_.terminal.width;
        // On a narrow terminal values stand below the names, where there is room for them.
        if (columns + leastValueColumns > width) {
            head.erase(head.find_last_not_of(' ') + 1);
            sink.write(view_.terminal.painted(inkOf(side), head) + '\n');
            columns = nameColumn;
            head = std::string(columns, ' ');
        }
        ValueCell cell(sink, view_.terminal.painted(inkOf(side), head), columns, width - columns);
        showValue(cell, side.file, entry, side.shown, {.isWhole = view_.isWhole, .isRaw = false});
        cell.finish();
        return row;
    }

    void writeText(const Side& side, const std::string& start, std::string_view text) {
        const std::size_t width = view_.terminal.width;
        const std::size_t columns = std::min(columnsOf(start), width / 2);
        ValueCell cell(sink_, view_.terminal.painted(inkOf(side), start), gap,
                       {.first = width - columns, .others = width - gap});
        cell.text(text, std::size_t(-1), "");
        cell.finish();
    }

    /// Whether two rows read the same behind their signs.
    [[nodiscard]] bool isSameText(std::string_view one, std::string_view other) const {
        const std::size_t sign = view_.terminal.painted(Ink::Removed, "-").find('-') + 1;
        return one.substr(std::min(sign, one.size())) == other.substr(std::min(sign, other.size()));
    }

    /// In what values differ that are shown alike.
    void writeNote(const Entry& left, const Entry& right, const ValueDifference& difference) {
        std::string text(1 + numberColumns + 1 + gap, ' ');
        if (difference.part == ValueDifference::Part::Kind) {
            text.append("(the first is ").append(typeOf(left));
            text.append(", the second ").append(typeOf(right)).append(")");
        } else {
            const bool isText = difference.part == ValueDifference::Part::Character;
            text.append("(they differ from ").append(isText ? "byte " : "value ");
            text.append(reading::groupedText(difference.index + 1)).append(" on)");
        }
        sink_.write(view_.terminal.painted(Ink::Faint, text) + '\n');
    }

    [[nodiscard]] static std::string typeOf(const Entry& entry) {
        return entry.type() ? std::string(entry.typeName())
                            : "of the unknown type " + std::to_string(entry.typeCode());
    }

    [[nodiscard]] char signOf(const Side& side) const { return &side == &left_ ? '-' : '+'; }
    [[nodiscard]] Ink inkOf(const Side& side) const {
        return &side == &left_ ? Ink::Removed : Ink::Added;
    }

    StreamSink sink_;
    Side left_;
    Side right_;
    const DifferenceView& view_;
    std::string heading_;    ///< the path of a directory of which nothing has been written
    bool isInList_ = false;  ///< a directory that one file alone has was the last
    DifferenceCount count_;
};

}  // namespace

DifferenceCount writeDifferences(std::ostream& out, const NamedFile& left, const NamedFile& right,
                                 const DifferenceView& view) {
    return Differences(out, left, right, view).write();
}

}  // namespace tool
