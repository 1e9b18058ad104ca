#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "inspect/rules/rule_table.h"
#include "tests/tool/run_command.h"
#include "tool/explanation.h"

namespace {

using tool::ReportGroup;
using tool_test::Output;
using tool_test::runTool;

/// The rows of all tables of a page: those that begin with an ID.
std::vector<std::string> rowsOf(const std::string& page) {
    std::ifstream in(std::string(CORVINEX_SOURCE_FOLDER) + "/docs/" + page);
    std::vector<std::string> rows;
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("| `")) {
            rows.push_back(line);
        }
    }
    return rows;
}

void expectRows(const std::string& page, const std::vector<std::string>& expected) {
    const std::vector<std::string> rows = rowsOf(page);
    EXPECT_EQ(rows.size(), expected.size());
    for (std::size_t row = 0; row < std::min(rows.size(), expected.size()); ++row) {
        EXPECT_EQ(rows[row], expected[row]);
    }
}

std::string rowOf(const std::vector<std::string_view>& cells) {
    std::string row = "|";
    for (const std::string_view cell : cells) {
        row.append(" ").append(cell).append(" |");
    }
    return row;
}

std::string quoted(std::string_view id) {
    return '`' + std::string(id) + '`';
}

}  // namespace

TEST(Explanations, OfReportsAreThoseOfTheirPage) {
    std::vector<std::string> rows;
    for (const tool::ReportExplanation& row : tool::reportExplanations()) {
        const std::string id = quoted(row.id);
        const std::string_view once = row.once.empty() ? "each time" : row.once;
        rows.push_back(
            row.group == ReportGroup::Error
                ? rowOf({id, row.arguments, row.meaning, row.advice})
                : rowOf({id, row.arguments, row.meaning, row.outcome, once, row.advice}));
    }
    expectRows("reports.md", rows);
}

TEST(Explanations, OfFindingsAreThoseOfTheirPage) {
    std::vector<std::string> rows;
    for (const tool::FindingExplanation& row : tool::findingExplanations()) {
        const auto& rules = corvinex::inspect::findingRules();
        const auto* const rule = std::ranges::find(rules, row.id, &corvinex::inspect::RuleFact::id);
        const bool isRule = rule != rules.end();
        rows.push_back(rowOf({quoted(row.id), isRule ? severityName(rule->severity) : "the rule's",
                              isRule ? rule->text : "{2} more findings {1} are not shown.",
                              row.meaning, row.outcome, row.advice}));
    }
    expectRows("findings.md", rows);
}

TEST(Explanations, AreThereForEveryRuleOnce) {
    std::set<std::string_view> ids;
    for (const tool::FindingExplanation& row : tool::findingExplanations()) {
        EXPECT_TRUE(ids.insert(row.id).second) << row.id;
    }
    for (const auto& rule : corvinex::inspect::findingRules()) {
        EXPECT_TRUE(ids.contains(rule.id)) << rule.id;
    }
    EXPECT_EQ(ids.size(), corvinex::inspect::findingRules().size() + 1);  // and "more"
}

TEST(ExplainCommand, ExplainsAFinding) {
    const auto result = runTool({"explain", "valuePastEnd"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.out,
              "valuePastEnd: finding (error)\n"
              "  Text        The value of {tag}, {2} bytes at {1}, ends past the end of the\n"
              "              file.\n"
              "  Meaning     Count and type of the entry make a value that ends past the end\n"
              "              of the file.\n"
              "  The data    The entry is given without its value.\n"
              "  What to do  Copy the file anew: it is cut off, or the entry is damaged.\n");
}

TEST(ExplainCommand, ExplainsAReportWithAndWithoutThePrefix) {
    const auto result = runTool({"explain", "tagDataPastEOF"});
    EXPECT_EQ(result.out,
              "quorra:corvinex:tagDataPastEOF: warning of the module\n"
              "  Arguments   tag, byte count\n"
              "  Meaning     The value would end past the end of the file.\n"
              "  The data    Entry dropped.\n"
              "  What to do  Copy the file anew: it is cut off or damaged.\n");
    EXPECT_EQ(runTool({"explain", "quorra:corvinex:tagDataPastEOF"}).out, result.out);
    EXPECT_EQ(runTool({"explain", "KORVEL:string:MissingNotSupported"}).exitStatus, 0);
}

TEST(ExplainCommand, ExplainsAnErrorAndAWarningWithOneId) {
    const std::string out = runTool({"explain", "unrecognizedTagFormatId"}).out;
    EXPECT_NE(out.find(": error of the module\n"), std::string::npos);
    EXPECT_NE(out.find(": warning of the module\n"), std::string::npos);
}

TEST(ExplainCommand, ListsAllIdsWithoutOne) {
    const auto result = runTool({"explain"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(result.out, '\n')),
              tool::findingExplanations().size() + tool::reportExplanations().size());
}

TEST(ExplainCommand, TellsTheNearestOfAnIdThatIsNone) {
    const auto result = runTool({"explain", "valuePastEn"});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.err,
              "corvinex: there is no report or finding \"valuePastEn\"; the nearest is "
              "\"valuePastEnd\"\ncorvinex: --help tells what can be given\n");
    EXPECT_EQ(runTool({"explain", ""}).exitStatus, 2);
}

TEST(ExplainCommand, EndsWithItsOwnStatusWhenTheOutputIsFull) {
    EXPECT_EQ(runTool({"explain"}, Output::DevFull).exitStatus, 3);
    EXPECT_EQ(runTool({"explain", "valuePastEnd"}, Output::DevFull).exitStatus, 3);
}
