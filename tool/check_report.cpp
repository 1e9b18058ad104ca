#include "tool/check_report.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "inspect/reading/number_text.h"
#include "inspect/record/finding_json.h"
#include "inspect/record/record_head.h"
#include "inspect/record/value_json.h"
#include "inspect/rules/rule_table.h"
#include "tool/csv_cell.h"
#include "tool/text_display.h"
#include "tool/text_sinks.h"

namespace tool {
namespace {

using corvinex::inspect::Finding;
using corvinex::inspect::JsonWriter;
using corvinex::inspect::Severity;
using corvinex::inspect::severityName;
using corvinex::inspect::Status;
using corvinex::inspect::statusName;
using corvinex::inspect::TextSink;
using corvinex::inspect::reading::countText;
using corvinex::inspect::reading::groupedText;

constexpr std::size_t statusWidth = 14;
constexpr std::size_t severityWidth = 9;

bool isFolder(const std::string& name) {
    std::error_code ignored;
    return std::filesystem::is_directory(name, ignored);
}

std::string padded(std::string_view text, std::size_t width) {
    std::string result(text);
    result.resize(std::max(width, text.size()), ' ');
    return result;
}

/// What a file breaks of one rule.
struct BrokenRule {
    std::string_view id;
    std::uint64_t count = 0;
    std::vector<std::string_view> directories;
};

/// The broken rules of one severity, in the order of their first findings.
std::vector<BrokenRule> brokenRules(const Verdict& verdict, Severity severity) {
    std::vector<BrokenRule> rules;
    for (const Finding* const finding : verdict.findings) {
        if (finding->severity != severity) {
            continue;
        }
        const std::string_view id = ruleOf(*finding);
        auto rule = std::ranges::find(rules, id, &BrokenRule::id);
        if (rule == rules.end()) {
            rule = rules.insert(rules.end(), BrokenRule{.id = id, .count = 0, .directories = {}});
        }
        rule->count += countOf(*finding);
        auto& directories = rule->directories;
        if (!finding->directory.empty() &&
            std::ranges::find(directories, finding->directory) == directories.end()) {
            directories.emplace_back(finding->directory);
        }
    }
    return rules;
}

/// "dataPastEnd (directories 0, 1), zeroGeometry 3 times (directory 0.sub1)"
void appendRules(std::string& line, const std::vector<BrokenRule>& rules) {
    constexpr std::size_t mostDirectories = 3;
    std::string_view between;
    for (const BrokenRule& rule : rules) {
        line.append(between).append(rule.id);
        between = ", ";
        if (rule.count > 1) {
            line.append(" ").append(groupedText(rule.count)).append(" times");
        }
        if (rule.directories.empty()) {
            continue;
        }
        line.append(rule.directories.size() == 1 ? " (directory " : " (directories ");
        for (std::size_t i = 0; i < std::min(rule.directories.size(), mostDirectories); ++i) {
            line.append(i == 0 ? "" : ", ").append(rule.directories[i]);
        }
        line.append(rule.directories.size() > mostDirectories ? ", ...)" : ")");
    }
}

std::string findingsPhrase(const Verdict& verdict, bool hasNotes) {
    struct Row {
        Severity severity;
        std::string_view one;
        std::string_view several;
    };
    static constexpr std::array rows{Row{Severity::Error, "error", "errors"},
                                     Row{Severity::Warning, "warning", "warnings"},
                                     Row{Severity::Note, "note", "notes"}};
    std::string phrase;
    for (const Row& row : rows) {
        const std::vector<BrokenRule> rules = brokenRules(verdict, row.severity);
        if (rules.empty() || (row.severity == Severity::Note && !hasNotes)) {
            continue;
        }
        std::uint64_t count = 0;
        for (const BrokenRule& rule : rules) {
            count += rule.count;
        }
        phrase.append(phrase.empty() ? "" : "; ").append(countText(count, row.one, row.several));
        phrase.append(": ");
        appendRules(phrase, rules);
    }
    return phrase;
}

std::string phraseFor(const InspectedFile& file, const Verdict& verdict, bool hasNotes) {
    switch (verdict.status) {
        case Status::Unreadable:
            return file.errorText() +
                   (isFolder(file.facts().name) ? "; files in this folder are not checked" : "");
        case Status::NotAnImage:
            return file.file()->size() == 0 ? "the file is empty"
                                            : countText(file.file()->size(), "byte", "bytes") +
                                                  ", neither TIFF nor JPEG";
        default:
            return findingsPhrase(verdict, hasNotes);
    }
}

}  // namespace

void writeCheckLine(TextSink& sink, const InspectedFile& file, const Verdict& verdict,
                    const CheckDetail& detail) {
    std::string line = padded(statusName(verdict.status), statusWidth);
    line += visibleText(file.facts().name);
    const std::string phrase = phraseFor(file, verdict, detail.hasNotes);
    line.append(phrase.empty() ? "" : "  ").append(phrase).append("\n");
    for (const Finding* const finding : verdict.findings) {
        if (detail.hasFindings) {
            line.append("    ").append(padded(severityName(finding->severity), severityWidth));
            if (!finding->directory.empty()) {
                line.append("directory ").append(finding->directory).append(": ");
            }
            line.append(visibleText(finding->text)).append(" [").append(ruleOf(*finding));
            line.append("]\n");
        }
    }
    sink.write(line);
}

void writeCheckRecord(TextSink& sink, const InspectedFile& file, const Verdict& verdict) {
    JsonWriter json(sink, JsonWriter::Style::OneLine);
    json.beginObject();
    writeName(json, file.facts());
    json.key<"status">().string(statusName(verdict.status));
    json.key<"findings">().beginArray();
    for (const Finding* const finding : verdict.findings) {
        writeFinding(json, *finding);
    }
    json.endArray();
    if (file.error()) {
        json.key<"reason">().string(file.error().message());
    }
    json.endObject().flush();
}

void writeCheckRows(TextSink& sink, const InspectedFile& file, const Verdict& verdict) {
    std::string end(",");
    if (file.error()) {
        addCell(end, file.error().message());
    }
    end += "\r\n";
    std::string start;
    addCell(start, corvinex::inspect::validUtf8(file.facts().name));
    start.append(",").append(statusName(verdict.status)).append(",");
    if (verdict.findings.empty()) {
        sink.write(start + ",,,,," + end);
        return;
    }
    for (const Finding* const finding : verdict.findings) {
        std::string arguments;
        StringSink into(arguments);
        JsonWriter json(into, JsonWriter::Style::OneLine);
        writeArguments(json, *finding);
        json.flush();
        arguments.pop_back();  // the end of the line
        std::string row = start;
        row.append(severityName(finding->severity)).append(",").append(finding->id).append(",");
        row.append(finding->directory).append(",");
        row.append(finding->tag ? std::to_string(*finding->tag) : "").append(",");
        addCell(row, arguments);
        addCell(row.append(","), finding->text);
        sink.write(row.append(end));
    }
}

void printRules(std::ostream& out) {
    constexpr std::size_t idWidth = 23;
    constexpr std::size_t scopeWidth = 11;
    constexpr std::size_t sourceWidth = 20;
    for (const corvinex::inspect::RuleFact& rule : corvinex::inspect::findingRules()) {
        out << padded(severityName(rule.severity), severityWidth) << padded(rule.id, idWidth)
            << padded(scopeName(rule.scope), scopeWidth) << padded(rule.source, sourceWidth)
            << rule.text << '\n';
    }
}

}  // namespace tool
