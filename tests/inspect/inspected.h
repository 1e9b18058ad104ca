#pragma once

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <vector>

#include "corvinex/inspect.h"
#include "inspect/record/json_writer.h"
#include "inspect/record/record.h"
#include "inspect/rules/rule_table.h"
#include "tests/support/tiff_builder.h"

// Files in memory, inspected.

namespace inspect_test {

using test::Bytes;

struct OwnedBytes {
    std::unique_ptr<const Bytes> bytes;
};

/// A file together with its bytes.
class InspectedBytes : private OwnedBytes, public corvinex::inspect::File {
  public:
    InspectedBytes(Bytes owned, const corvinex::inspect::Options& options)
        : OwnedBytes{std::make_unique<const Bytes>(std::move(owned))},
          File(fromBytes(std::as_bytes(std::span(*bytes)), options)) {}
};

inline InspectedBytes inspect(Bytes bytes, const corvinex::inspect::Options& options = {}) {
    return {std::move(bytes), options};
}

/// The paths of all directories in the order of the walk.
inline std::vector<std::string> pathsOf(const corvinex::inspect::File& file) {
    std::vector<std::string> paths;
    for (const corvinex::inspect::Directory& directory : file.directories()) {
        paths.push_back(directory.path());
    }
    return paths;
}

/// "id directory tag arguments" of each finding, as they are listed.
inline std::vector<std::string> findingsOf(const corvinex::inspect::File& file) {
    struct Text {
        std::string operator()(const std::string& text) const { return text; }
        std::string operator()(std::uint64_t number) const { return std::to_string(number); }
        std::string operator()(std::int64_t number) const { return std::to_string(number); }
    };
    std::vector<std::string> texts;
    for (const corvinex::inspect::Finding& finding : file.findings()) {
        std::string text = std::string(finding.id) + " [" + finding.directory + "]";
        if (finding.tag) {
            text += " " + std::to_string(*finding.tag);
        }
        for (const corvinex::inspect::Argument& argument : finding.arguments) {
            text += ", " + std::visit(Text(), argument);
        }
        texts.push_back(text);
    }
    return texts;
}

/// The same without what is told of types, counts, image data and fields: for files that are built
/// for their structure and hold no image.
inline std::vector<std::string> structureFindingsOf(const corvinex::inspect::File& file) {
    using corvinex::inspect::Rule;
    std::vector<std::string> texts = findingsOf(file);
    const auto& rules = corvinex::inspect::findingRules();
    std::erase_if(texts, [&](const std::string& text) {
        return std::any_of(rules.begin() + static_cast<std::ptrdiff_t>(Rule::TagType), rules.end(),
                           [&](const corvinex::inspect::RuleFact& rule) {
                               const std::string id(rule.id);
                               return text.starts_with(id + " ") ||
                                      text.starts_with("more [], " + id + ",");
                           });
    });
    return texts;
}

class StringSink final : public corvinex::inspect::TextSink {
  public:
    void write(std::string_view part) override { text += part; }
    std::string text;
};

enum class Form { Full, Flat };

inline std::string recordText(const Bytes& bytes,
                              const corvinex::inspect::RecordOptions& options = {},
                              Form form = Form::Full) {
    const InspectedBytes file = inspect(bytes);
    const corvinex::inspect::FileFacts facts{"a.tif", bytes.size(), std::nullopt};
    StringSink sink;
    corvinex::inspect::JsonWriter json(sink, corvinex::inspect::JsonWriter::Style::OneLine);
    if (form == Form::Full) {
        writeRecord(json, facts, &file, options);
    } else {
        writeFlatRecord(json, facts, &file, options);
    }
    json.flush();
    return sink.text;
}

inline nlohmann::ordered_json record(const Bytes& bytes,
                                     const corvinex::inspect::RecordOptions& options = {},
                                     Form form = Form::Full) {
    return nlohmann::ordered_json::parse(recordText(bytes, options, form));
}

/// The first entry of the first directory.
inline nlohmann::ordered_json entryRecord(const Bytes& bytes,
                                          const corvinex::inspect::RecordOptions& options = {}) {
    return record(bytes, options)["directories"][0]["entries"][0];
}

/// A file with one directory.
inline Bytes fileWith(std::vector<test::Field> fields, test::Order order = test::Order::Little,
                      test::Layout layout = test::Layout::Classic) {
    test::TiffBuilder builder(order, layout);
    builder.add(std::move(fields));
    return builder.bytes();
}

}  // namespace inspect_test
