#include "tool/inspect_view.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "inspect/reading/number_text.h"
#include "inspect/record/record_head.h"
#include "inspect/value_budget.h"
#include "tool/directory_folds.h"
#include "tool/display_width.h"
#include "tool/entry_view.h"
#include "tool/file_phrase.h"
#include "tool/finding_filter.h"
#include "tool/reading_order.h"
#include "tool/text_display.h"
#include "tool/value_cell.h"

namespace tool {
namespace {

namespace reading = corvinex::inspect::reading;
using corvinex::inspect::Container;
using corvinex::inspect::DerivedFact;
using corvinex::inspect::Directory;
using corvinex::inspect::Entry;
using corvinex::inspect::File;
using corvinex::inspect::Finding;
using corvinex::inspect::Severity;
using corvinex::inspect::Status;
using corvinex::inspect::TextSink;

constexpr std::size_t allLines = std::size_t(-1);
constexpr std::size_t indentation = 2;
// Of the lines below the first one of a text.
constexpr std::size_t hanging = 4;
constexpr std::size_t gap = 2;
constexpr std::size_t numberColumns = 5;
constexpr std::size_t typeColumns = 9;
constexpr std::size_t countColumns = 7;
constexpr std::size_t offsetColumns = 9;
// Few standard names are longer; those push their own value aside.
constexpr std::size_t mostNameColumns = 28;
constexpr std::string_view unknownName = "(unknown)";

std::string padded(std::string_view text, std::size_t columns) {
    return std::string(text).append(columns - std::min(columns, text.size()), ' ');
}

std::string rightAligned(std::string_view text, std::size_t columns) {
    return std::string(columns - std::min(columns, text.size()), ' ').append(text);
}

Ink inkOf(Severity severity) {
    static constexpr std::array inks{Ink::Plain, Ink::Warning, Ink::Error};
    return inks.at(static_cast<std::size_t>(severity));
}

/// Writes what there is to say of one file that could be opened.
class FileWriter {
  public:
    FileWriter(TextSink& sink, const InspectedFile& inspected, const InspectView& view)
        : sink_(sink),
          file_(*inspected.file()),
          name_(visibleText(inspected.facts().name)),
          view_(view),
          budget_(file_.size()),
          comparisons_(file_.size()) {}

    void write() {
        writeHead();
        if (view_.detail == InspectView::Detail::Summary) {
            for (std::size_t next = 0; next < file_.directories().size();) {
                next = writeFold(next);
            }
        } else {
            const std::size_t nameColumns = longestName();
            for (const std::uint32_t directory : readingOrder(file_)) {
                writeDirectory(file_.directories()[directory], nameColumns);
            }
        }
        writeFindings();
    }

  private:
    void writeHead() {
        std::string head;
        const auto add = [&head](std::string_view part) {
            head.append(head.empty() || part.empty() ? "" : ", ").append(part);
        };
        if (!file_.container()) {
            writeText(view_.terminal.painted(Ink::Heading, name_) + ": ", columnsOf(name_) + 2,
                      file_.size() == 0 ? "no image, the file is empty"
                                        : "no image, neither TIFF nor JPEG, " +
                                              reading::byteCountText(file_.size()));
            return;
        }
        add(containerName(*file_.container()));
        if (file_.byteOrder()) {
            add(byteOrderName(*file_.byteOrder()));
        }
        add(reading::byteCountText(file_.size()));
        const auto facts =
            corvinex::inspect::readIfPossible([&] { return std::optional(file_.derived()); });
        add(pagesAndSize(facts.value_or(std::vector<DerivedFact>())));
        add(phraseOf(file_));
        const Status status = file_.status();
        if (status == Status::Damaged || status == Status::NoMetadata) {
            add(status == Status::Damaged ? "damaged" : "no EXIF block");
        }
        writeFacts(view_.terminal.painted(Ink::Heading, name_) + ": ", columnsOf(name_) + 2, head);
        const std::string place = placeOf(file_);
        if (!place.empty()) {
            writeFacts(std::string(indentation, ' '), indentation, place);
        }
    }

    [[nodiscard]] std::string pagesAndSize(const std::vector<DerivedFact>& facts) const {
        const auto find = [&facts](std::string_view name) -> const std::uint64_t* {
            const auto found = std::ranges::find(facts, name, &DerivedFact::name);
            return found == facts.end() ? nullptr : std::get_if<std::uint64_t>(&found->value);
        };
        std::string text;
        // A JPEG's second directory is its thumbnail.
        const auto* const pages = find("pages");
        if (pages != nullptr && file_.container() != Container::Jpeg) {
            text = reading::countText(*pages, "page", "pages");
        }
        const auto* const width = find("width");
        const auto* const height = find("height");
        if (width != nullptr && height != nullptr) {
            text.append(text.empty() ? "" : ", ").append(std::to_string(*width));
            text.append(" x ").append(std::to_string(*height)).append(" px");
        }
        return text;
    }

    /// Facts with commas between them behind a head, broken between facts.
    void writeFacts(std::string head, std::size_t headColumns, std::string_view facts) {
        constexpr std::string_view comma = ", ";
        const std::size_t width = view_.terminal.width;
        const std::size_t start = headColumns > width / 2 ? indentation : headColumns;
        std::size_t room = width - start;
        std::string text;
        std::size_t column = 0;
        if (headColumns + columnsOf(facts) <= width) {
            text = facts;
            facts = {};
        }
        while (!facts.empty()) {
            const std::size_t end = std::min(facts.find(comma), facts.size());
            const std::string_view fact = facts.substr(0, end);
            const std::size_t columns = columnsOf(fact);
            if (column != 0) {
                // A line ends with the comma, unless it is the last.
                const std::size_t behind = end == facts.size() ? 0 : 1;
                const bool fits = column + comma.size() + columns + behind <= room;
                text += fits ? comma : ",\n";
                column = fits ? column + comma.size() : 0;
                room = fits ? room : width - std::min({start, hanging, width});
            }
            text += fact;
            column += columns;
            facts.remove_prefix(std::min(end + comma.size(), facts.size()));
        }
        writeText(std::move(head), headColumns, text);
    }

    /// A text behind a head, broken into lines below each other.
    void writeText(std::string head, std::size_t headColumns, std::string_view text) {
        const std::size_t width = view_.terminal.width;
        // Behind a long head lines begin near the left again.
        const bool isLong = headColumns > width / 2;
        if (isLong && headColumns + columnsOf(text) > width) {
            sink_.write(head.erase(head.find_last_not_of(' ') + 1) + '\n');
            head = std::string(indentation, ' ');
            headColumns = indentation;
        }
        const std::size_t below = std::min(headColumns, hanging);
        ValueCell cell(sink_, std::move(head), below,
                       ValueCell::Widths{.first = width - std::min(headColumns, width - 1),
                                         .others = width - std::min(below, width - 1)});
        cell.text(text, allLines, "");
        cell.finish();
    }

    /// The columns of names, so that all directories stand in line.
    [[nodiscard]] std::size_t longestName() const {
        constexpr std::size_t numbers = 65536;
        constexpr std::size_t kinds = 5;
        std::vector<bool> isSeen(numbers * kinds);  // names are looked up once
        std::size_t longest = unknownName.size();
        for (const Directory& directory : file_.directories()) {
            const std::size_t kind = static_cast<std::size_t>(directory.kind()) * numbers;
            const std::string path = view_.isSelection ? directory.path() : std::string();
            for (const Entry& entry : directory.entries()) {
                if (!isSeen[kind + entry.number()] && view_.tags.contains(entry, path)) {
                    isSeen[kind + entry.number()] = true;
                    longest = std::max(longest, entry.name().size());
                }
            }
        }
        return std::min(longest, mostNameColumns);
    }

    void writeDirectory(const Directory& directory, std::size_t nameColumns) {
        const std::string path = directory.path();
        const auto isWanted = [&](const Entry& entry) { return view_.tags.contains(entry, path); };
        if (view_.isSelection && std::ranges::none_of(directory.entries(), isWanted)) {
            return;
        }
        sink_.write("\n");
        writeDirectoryHead(directory, path);
        // What was read out of other data has little to say, and screens full of it.
        const bool hidesRubbish =
            directory.record().isGarbled && !view_.isWhole && !view_.isRaw && !view_.isSelection;
        std::uint64_t hidden = 0;
        for (const Entry& entry : directory.entries()) {
            if (hidesRubbish && !isReadable(entry)) {
                ++hidden;
            } else if (isWanted(entry)) {
                writeEntry(entry, nameColumns);
            }
        }
        if (hidden != 0) {
            std::string text = "(";
            text += reading::countText(hidden, "entry", "entries");
            text += " without a readable value left out; --all shows them)";
            writeText(std::string(indentation, ' '), indentation, text);
        }
    }

    [[nodiscard]] static bool isReadable(const Entry& entry) {
        return entry.type() && entry.count() != 0 && entry.isInFile();
    }

    void writeDirectoryHead(const Directory& directory, const std::string& path) {
        std::string text = phraseOf(file_, directory, &budget_);
        text += ", " + reading::countText(directory.toldCount(), "entry", "entries");
        if (directory.entries().size() != directory.toldCount()) {
            text += " (" + reading::groupedText(directory.entries().size()) + " in the file)";
        }
        if (view_.isRaw) {
            text += ", at byte " + std::to_string(directory.offset());
        }
        writeFacts(view_.terminal.painted(Ink::Heading, path) + ": ", path.size() + 2, text);
    }

    void writeEntry(const Entry& entry, std::size_t nameColumns) {
        const Terminal& terminal = view_.terminal;
        std::string head(indentation, ' ');
        head += terminal.painted(Ink::Faint,
                                 rightAligned(std::to_string(entry.number()), numberColumns));
        const std::string_view name = entry.name();
        head.append(gap, ' ').append(padded(name.empty() ? unknownName : name, nameColumns));
        std::size_t columns =
            indentation + numberColumns + gap + std::max(name.size(), nameColumns);
        if (view_.isRaw) {
            const std::string type = entry.type() ? std::string(entry.typeName())
                                                  : "type " + std::to_string(entry.typeCode());
            const std::string count = std::to_string(entry.count());
            const std::string offset = entry.offset() ? std::to_string(*entry.offset()) : "-";
            std::string raw(gap, ' ');
            raw += padded(type, typeColumns) + ' ' + rightAligned(count, countColumns) + ' ' +
                   rightAligned(offset, offsetColumns);
            columns += raw.size();
            head += terminal.painted(Ink::Faint, raw);
        }
        head.append(gap, ' ');
        columns += gap;
        // On a narrow terminal values stand below the names, where there is room for them.
        constexpr std::size_t leastValueColumns = 24;
        const std::size_t width = terminal.width;
        if (columns + leastValueColumns > width) {
            sink_.write(head.erase(head.find_last_not_of(' ') + 1) + '\n');
            columns = indentation + numberColumns + gap;
            head = std::string(columns, ' ');
        }
        ValueCell cell(sink_, std::move(head), columns, width - columns);
        showValue(cell, file_, entry, budget_, {.isWhole = view_.isWhole, .isRaw = view_.isRaw});
        cell.finish();
    }

    /// One line for a directory and one for those that are like it. Returns the next one's index.
    std::size_t writeFold(std::size_t first) {
        const DirectoryFold fold = foldAt(file_, first, comparisons_);
        const Directory& model = file_.directories()[first];
        writeDirectoryHead(model, model.path());
        if (fold.last == first) {
            return first + 1;
        }
        std::string paths = file_.directories()[first + 1].path();
        if (fold.last != first + 1) {
            paths += '-' + file_.directories()[fold.last].path();
        }
        std::string text = "as " + model.path();
        for (std::size_t i = 0; i < fold.differences.size(); ++i) {
            text.append(i == 0 ? ", but " : ", ").append(fold.differences[i]);
        }
        writeFacts(view_.terminal.painted(Ink::Heading, paths) + ": ", paths.size() + 2, text);
        return fold.last + 1;
    }

    /// How many findings these stand for, those that the list was too short for among them.
    [[nodiscard]] static std::uint64_t countOf(std::span<const Finding* const> findings) {
        std::uint64_t count = 0;
        for (const Finding* const finding : findings) {
            count += tool::countOf(*finding);
        }
        return count;
    }

    /// "2 errors, 1 note".
    [[nodiscard]] static std::string countsOf(std::span<const Finding* const> worstFirst) {
        std::string text;
        while (!worstFirst.empty()) {
            const Severity severity = worstFirst.front()->severity;
            const auto next = std::ranges::find_if(worstFirst, [severity](const Finding* finding) {
                return finding->severity != severity;
            });
            const auto rows = static_cast<std::size_t>(next - worstFirst.begin());
            const std::string one(severityName(severity));
            text.append(text.empty() ? "" : ", ");
            text += reading::countText(countOf(worstFirst.first(rows)), one, one + 's');
            worstFirst = worstFirst.subspan(rows);
        }
        return text;
    }

    /// Leaves those on the entries that are selected.
    void keepSelected(std::vector<const Finding*>& findings) const {
        std::map<std::string, const Directory*, std::less<>> directories;
        for (const Directory& directory : file_.directories()) {
            directories.emplace(directory.path(), &directory);
        }
        std::erase_if(findings, [&](const Finding* finding) {
            const auto place = directories.find(finding->directory);
            const Entry* const entry = finding->tag && place != directories.end()
                                           ? place->second->find(*finding->tag)
                                           : nullptr;
            return entry == nullptr || !view_.tags.contains(*entry, finding->directory);
        });
    }

    void writeFindings() {
        std::vector<const Finding*> findings;
        for (const Finding& finding : file_.findings()) {
            findings.push_back(&finding);
        }
        const std::uint64_t all = countOf(findings);
        if (view_.isSelection && view_.detail == InspectView::Detail::Entries) {
            keepSelected(findings);
        }
        if (all == 0) {
            return;
        }
        std::ranges::stable_sort(findings, [](const Finding* left, const Finding* right) {
            return left->severity > right->severity;
        });
        if (view_.detail == InspectView::Detail::Summary) {
            writeText("", 0, countsOf(findings));
            return;
        }
        sink_.write("\n");
        for (const Finding* const finding : findings) {
            const std::string severity(severityName(finding->severity));
            std::string text = finding->directory;
            text += text.empty() ? "" : ": ";
            text += finding->text;
            const std::string head =
                view_.terminal.painted(inkOf(finding->severity), severity) + ": ";
            writeText(head, severity.size() + 2, text.append(" [").append(finding->id).append("]"));
        }
        if (const std::uint64_t others = all - countOf(findings); others != 0) {
            writeText("", 0,
                      "(" + reading::countText(others, "other finding", "other findings") +
                          " left out; without --tag all are told)");
        }
    }

    TextSink& sink_;
    const File& file_;
    std::string name_;
    const InspectView& view_;
    corvinex::inspect::ValueBudget budget_;
    corvinex::inspect::ValueBudget comparisons_;
};

}  // namespace

void writeInspection(TextSink& sink, const InspectedFile& file, const InspectView& view) {
    if (file.file() == nullptr) {
        const std::string name = visibleText(file.facts().name);
        sink.write(view.terminal.painted(Ink::Heading, name) + ": could not be read\n");
        return;
    }
    FileWriter(sink, file, view).write();
}

}  // namespace tool
