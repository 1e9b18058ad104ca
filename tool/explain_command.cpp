#include "tool/explain_command.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tool/explanation.h"
#include "tool/nearest_name.h"
#include "tool/usage_error.h"

namespace tool {
namespace {

/// A heading, and a text behind it in lines of whole words.
void printParagraph(std::ostream& out, std::string_view heading, std::string_view text) {
    constexpr std::size_t textColumn = 14;
    constexpr std::size_t lineLength = 79;
    if (text.empty()) {
        return;
    }
    std::string line = "  " + std::string(heading);
    line.append(textColumn - line.size(), ' ');
    std::size_t used = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        const std::string_view word = text.substr(0, end);
        if (used != 0 && line.size() + 1 + word.size() > lineLength) {
            out << line << '\n';
            line.assign(textColumn, ' ');
            used = 0;
        }
        line.append(used == 0 ? "" : " ").append(word);
        used += word.size();
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    out << line << '\n';
}

/// What stands in a table's cell, as a sentence.
std::string sentence(std::string_view cell) {
    std::string text(cell);
    if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') {
        text.front() = static_cast<char>(text.front() - 'a' + 'A');
    }
    return text.empty() || text.ends_with('.') ? text : text + '.';
}

void print(std::ostream& out, const Explanation& row) {
    out << row.id << ": " << row.kind << '\n';
    printParagraph(out, "Text", row.message);
    printParagraph(out, "Arguments", row.arguments == "none" ? "" : row.arguments);
    printParagraph(out, "Meaning", sentence(row.meaning));
    printParagraph(out, "The data", sentence(row.outcome));
    printParagraph(out, "What to do", sentence(row.advice));
}

std::string_view withoutPrefix(std::string_view id) {
    return id.starts_with(reportPrefix) ? id.substr(reportPrefix.size()) : id;
}

std::string noSuchId(std::string_view id, const std::vector<Explanation>& all) {
    std::vector<std::string_view> names;
    names.reserve(all.size());
    for (const Explanation& row : all) {
        names.push_back(withoutPrefix(row.id));
    }
    std::string text = "there is no report or finding \"" + std::string(id) + '"';
    if (const auto nearest = nearestName(withoutPrefix(id), names)) {
        text.append("; the nearest is \"").append(*nearest).append("\"");
    }
    return text;
}

}  // namespace

ExitStatus runExplain(const Arguments& arguments, std::ostream& out, std::ostream& /*err*/) {
    const std::vector<Explanation> all = allExplanations();
    if (arguments.operands().empty()) {
        for (const Explanation& row : all) {
            out << withoutPrefix(row.id) << ": " << row.kind << '\n';
        }
        return out.flush() ? Success : OutputFailed;
    }
    const std::string_view id = arguments.operands().front();
    bool isFound = false;
    for (const Explanation& row : all) {
        if (row.id == id || withoutPrefix(row.id) == id) {
            out << (isFound ? "\n" : "");
            print(out, row);
            isFound = true;
        }
    }
    if (!isFound) {
        throw UsageError(noSuchId(id, all));
    }
    return out.flush() ? Success : OutputFailed;
}

}  // namespace tool
