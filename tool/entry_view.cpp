#include "tool/entry_view.h"

#include <concepts>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "inspect/interpretation.h"
#include "inspect/reading/joined_elements.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/xml.h"
#include "inspect/record/record_head.h"
#include "tool/display_width.h"
#include "tool/text_display.h"
#include "vocabulary/registry.h"

namespace tool {
namespace {

namespace registry = corvinex::registry;
namespace reading = corvinex::inspect::reading;
using corvinex::inspect::BasicRational;
using corvinex::inspect::Entry;
using corvinex::inspect::File;
using corvinex::inspect::Interpretation;
using corvinex::inspect::Value;
using Form = Interpretation::Form;

// A text that a person reads at a glance, and a reading of many parts, such as GeoTIFF keys.
constexpr std::size_t fewLines = 3;
constexpr std::size_t manyLines = 40;
constexpr std::size_t allLines = std::numeric_limits<std::size_t>::max();

template <std::integral Number>
void append(std::string& line, Number number) {
    line += std::to_string(number);
}

template <std::floating_point Number>
void append(std::string& line, Number number) {
    line += reading::shortestText(number);
}

template <class Number>
void append(std::string& line, const BasicRational<Number>& rational) {
    append(line, rational.numerator);
    line += '/';
    append(line, rational.denominator);
}

void append(std::string& line, std::byte byte) {
    constexpr std::string_view digits = "0123456789abcdef";
    line += digits[std::to_integer<std::size_t>(byte >> 4U)];
    line += digits[std::to_integer<std::size_t>(byte & std::byte{0xF})];
}

std::string cutMark(std::uint64_t count, std::string_view one, std::string_view several) {
    return " ... (" + reading::countText(count, one, several) + ")";
}

/// The mark behind the start of a value that is cut.
std::string cutMarkOf(const Value& value, Form form) {
    if (form == Form::Text || form == Form::Texts) {
        return cutMark(value.bytes().size(), "byte of text", "bytes of text");
    }
    return form == Form::Bytes ? cutMark(value.bytes().size(), "byte", "bytes")
                               : cutMark(value.size(), "value", "values");
}

/// Shows one value.
class ValueLines {
  public:
    ValueLines(ValueCell& cell, const Entry& entry, const Value& value, ValueView view)
        : cell_(cell),
          entry_(entry),
          value_(value),
          view_(view),
          interpretation_(corvinex::inspect::interpret(entry, value)),
          mark_(cutMarkOf(value, interpretation_.form)) {}

    void show(const std::optional<std::string>& meaning, const std::string& behind) {
        if (!entry_.type()) {
            cell_.text("(unknown type " + std::to_string(entry_.typeCode()) + ": " +
                           joined(value_.bytes(), " ") + ")",
                       allLines, "");
        } else if (view_.isRaw) {
            showRaw(meaning && !isItsText(*meaning) ? *meaning : behind);
        } else if (!behind.empty()) {
            cell_.text(behind, view_.isWhole ? allLines : fewLines, mark_);
        } else if (meaning) {
            const bool hasParts = meaning->find('\n') != std::string::npos;
            const std::size_t lines = hasParts ? manyLines : fewLines;
            cell_.text(*meaning, view_.isWhole ? allLines : lines, mark_);
            if (view_.isWhole && saysLessThanTheValue(*meaning)) {
                showValue();
            }
        } else {
            showValue();
        }
    }

  private:
    /// Whether what a value means is its own text without the blanks at its end.
    [[nodiscard]] bool isItsText(std::string_view meaning) const {
        return interpretation_.form == Form::Text &&
               interpretation_.texts.front().starts_with(meaning) &&
               interpretation_.texts.front().find_first_not_of(" \t\r\n", meaning.size()) ==
                   std::string::npos;
    }

    /// Whether what a value means leaves out what stands in it.
    [[nodiscard]] bool saysLessThanTheValue(std::string_view meaning) const {
        using registry::Encoding;
        const registry::TagFact* const fact =
            registry::findTag(entry_.directory().kind(), entry_.number());
        if (fact == nullptr) {
            return false;
        }
        switch (fact->encoding) {
            case Encoding::Text:
            case Encoding::Comment:
            case Encoding::Utf16Bytes:
                return interpretation_.texts.empty() ||
                       !interpretation_.texts.front().starts_with(meaning);
            case Encoding::Xmp:
            case Encoding::GdalMetadata:
            case Encoding::Icc:
            case Encoding::Iptc:
            case Encoding::PhotoshopIrb:
            case Encoding::MakerNote:
            case Encoding::Opaque:
                return true;
            case Encoding::GeoKeys:
                return false;
            default:
                return value_.size() > reading::mostElementsRead;
        }
    }

    /// The value and, where there is room beside it, what it means; otherwise that stands below.
    void showRaw(const std::string& meaning) {
        std::string beside;
        if (!meaning.empty() && meaning.find('\n') == std::string::npos) {
            beside = "  (" + visibleText(meaning) + ")";
        }
        const std::optional<std::string> value = shortLine();
        if (value && !beside.empty() && interpretation_.rest.empty() &&
            columnsOf(*value) + columnsOf(beside) <= cell_.columns()) {
            cell_.line(*value + beside);
            return;
        }
        showValue();
        if (!interpretation_.rest.empty()) {
            cell_.text("and " + reading::byteCountText(interpretation_.rest.size()) +
                           " behind the zero that ends it",
                       allLines, "");
        }
        if (!meaning.empty()) {
            const std::string_view text =
                beside.empty() ? meaning : std::string_view(beside).substr(2);
            const std::size_t lines = beside.empty() ? manyLines : fewLines;
            cell_.text(text, view_.isWhole ? allLines : lines, mark_);
        }
    }

    void showValue() {
        switch (interpretation_.form) {
            case Form::Text:
                showText(interpretation_.texts.front());
                return;
            case Form::Texts: {
                std::string all;
                for (const std::string& text : interpretation_.texts) {
                    all.append(all.empty() ? "" : "\n").append(text);
                }
                showText(all);
                return;
            }
            case Form::Bytes:
                showList(value_.bytes(), " ");
                return;
            case Form::Number:
            case Form::Numbers:
                break;
        }
        std::visit(
            [this](auto elements) {
                if constexpr (!std::same_as<decltype(elements), std::string_view>) {
                    showList(elements, ", ");
                }
            },
            value_.elements());
    }

    /// The whole value on one line, when it is short.
    [[nodiscard]] std::optional<std::string> shortLine() const {
        if (value_.size() > cell_.columns()) {
            return std::nullopt;
        }
        switch (interpretation_.form) {
            case Form::Text:
                return quotedText(lenientUtf16(interpretation_.texts.front()));
            case Form::Texts:
                return std::nullopt;
            case Form::Bytes:
                return joined(value_.bytes(), " ");
            case Form::Number:
            case Form::Numbers:
                break;
        }
        std::string line;
        std::visit(
            [&line](auto elements) {
                if constexpr (!std::same_as<decltype(elements), std::string_view>) {
                    line = joined(elements, ", ");
                }
            },
            value_.elements());
        return line;
    }

    template <class List>
    [[nodiscard]] static std::string joined(List list, std::string_view separator) {
        std::string line;
        for (const auto& element : list) {
            line.append(line.empty() ? "" : separator);
            append(line, element);
        }
        return line;
    }

    void showText(std::string_view text) {
        if (view_.isRaw && !view_.isWhole) {
            // The quotes show blanks at the end.
            const std::size_t most = cell_.columns() * fewLines;
            const bool isLong = text.size() > most;
            const std::string quoted =
                quotedText(lenientUtf16(isLong ? firstColumns(text, most) : text));
            cell_.text(quoted, fewLines, mark_);
            return;
        }
        std::string visible;
        if (isVersion()) {
            visible = visibleText(text);
            text = visible;
        }
        std::string indented;
        if (view_.isWhole && text.starts_with('<')) {
            indented = reading::indentedXml(text).value_or(std::string());
        }
        const std::string_view all = indented.empty() ? text : std::string_view(indented);
        const std::string_view shown = all.substr(0, all.find_last_not_of(" \n\r\t") + 1);
        if (shown.empty()) {
            cell_.line("(blank)");
            return;
        }
        cell_.text(shown, view_.isWhole ? allLines : fewLines, mark_);
    }

    /// A few characters in raw bytes; a line break among them breaks no line.
    [[nodiscard]] bool isVersion() const {
        const registry::TagFact* const fact =
            registry::findTag(entry_.directory().kind(), entry_.number());
        return fact != nullptr && fact->encoding == registry::Encoding::TextInUndefined;
    }

    template <class List>
    void showList(List list, std::string_view separator) {
        const std::size_t columns = cell_.columns();
        const std::size_t room = columns - std::min(columns, mark_.size());
        std::string line;
        std::size_t uncut = 0;  // the line's length up to which the mark has room behind it
        for (std::size_t i = 0; i < list.size(); ++i) {
            const std::size_t before = line.size();
            append(line, list[i]);
            const bool isLast = i + 1 == list.size();
            const std::size_t comma = !isLast && separator.starts_with(',') ? 1 : 0;
            if (line.size() + comma > columns && i != 0) {
                if (!view_.isWhole) {
                    cell_.cutLine(std::string_view(line).substr(0, uncut), mark_);
                    return;
                }
                cell_.line(std::string_view(line).substr(0, before));
                line.erase(0, before);
            }
            uncut = line.size() <= room || uncut == 0 ? line.size() : uncut;
            line.append(isLast ? "" : separator);
        }
        cell_.line(line);
    }

    ValueCell& cell_;
    const Entry& entry_;
    const Value& value_;
    ValueView view_;
    Interpretation interpretation_;
    std::string mark_;
};

/// The directories that a pointer leads to: "-> 0.exif".
std::string targetsOf(const File& file, const Entry& entry, ValueView view) {
    // More of them do not fit into the lines that a value may take.
    constexpr std::size_t fewTargets = 100;
    std::string text;
    std::size_t left = view.isWhole ? allLines : fewTargets;
    for (const std::uint32_t target : entry.targets()) {
        if (left-- == 0) {
            break;
        }
        const bool leadsNowhere = target >= file.directories().size();
        text += text.empty() ? "-> " : ", ";
        text += leadsNowhere ? std::string("nowhere") : file.directories()[target].path();
    }
    return text;
}

/// Why an entry has no value to show.
std::string reasonOf(const Entry& entry) {
    if (entry.count() == 0) {
        return "(no value)";
    }
    if (!entry.isInFile()) {
        return "(not in the file: " + reading::byteCountText(entry.byteCount()) + " at " +
               std::to_string(entry.offset().value_or(0)) + ")";
    }
    return "(cannot be read)";
}

}  // namespace

void showValue(ValueCell& cell, const File& file, const Entry& entry,
               corvinex::inspect::ValueBudget& budget, ValueView view) {
    using corvinex::inspect::readIfPossible;
    if (entry.isInFile() && !budget.take(entry.byteCount())) {
        cell.text("(left out: the values come to several times the file's size)", allLines, "");
        return;
    }
    const std::optional<Value> value = readIfPossible([&] { return entry.value(); });
    if (!value) {
        cell.text(reasonOf(entry), allLines, "");
        return;
    }
    ValueLines(cell, entry, *value, view)
        .show(readIfPossible([&] { return entry.text(*value); }), targetsOf(file, entry, view));
}

}  // namespace tool
