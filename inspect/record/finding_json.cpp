#include "inspect/record/finding_json.h"

#include <cstdint>
#include <string>
#include <variant>

#include "inspect/rules/rule_table.h"

namespace corvinex::inspect {

namespace {

Finding makeUnreadable() {
    const RuleFact& rule = findingRules()[static_cast<std::size_t>(Rule::FileUnreadable)];
    return {.id = rule.id,
            .severity = rule.severity,
            .directory = {},
            .tag = std::nullopt,
            .arguments = {},
            .text = std::string(rule.text)};
}

struct ArgumentWriter {
    JsonWriter& json;
    void operator()(std::uint64_t number) const { json.integer(number); }
    void operator()(std::int64_t number) const { json.integer(number); }
    void operator()(const std::string& text) const { json.string(text); }
};

}  // namespace

std::span<const Finding> findingsOf(const File* file) {
    static const Finding unreadable = makeUnreadable();
    return file == nullptr ? std::span(&unreadable, 1) : file->findings();
}

void writeArguments(JsonWriter& json, const Finding& finding) {
    json.beginList();
    for (const Argument& argument : finding.arguments) {
        std::visit(ArgumentWriter{json}, argument);
    }
    json.endArray();
}

void writeFinding(JsonWriter& json, const Finding& finding) {
    json.beginRow().key("id").word(finding.id);
    json.key("severity").word(severityName(finding.severity));
    json.key("directory").word(finding.directory).key("tag");
    if (finding.tag) {
        json.integer(std::uint64_t{*finding.tag});
    } else {
        json.null();
    }
    json.key("arguments");
    writeArguments(json, finding);
    json.key("text").string(finding.text).endObject();
}

}  // namespace corvinex::inspect
