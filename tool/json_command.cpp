#include "tool/json_command.h"

#include <ostream>
#include <string_view>

#include "inspect/record/json_writer.h"
#include "inspect/record/record.h"
#include "tool/inspected_file.h"

namespace tool {

namespace {

using corvinex::inspect::JsonWriter;

class StreamSink final : public corvinex::inspect::TextSink {
  public:
    explicit StreamSink(std::ostream& out) : out_(out) {}
    void write(std::string_view text) override {
        out_.write(text.data(), static_cast<std::streamsize>(text.size()));
    }

  private:
    std::ostream& out_;
};

}  // namespace

ExitStatus json(const JsonOptions& options, std::ostream& out, std::ostream& err) {
    const corvinex::inspect::RecordOptions record{
        .maxValues = options.maxValues,
        .tags = corvinex::inspect::TagSelection(options.tags),
        .codesAsNumbers = options.numeric};
    const corvinex::inspect::Options how{.headerOffset = options.headerOffset};
    StreamSink sink(out);
    JsonWriter writer(sink,
                      options.pretty ? JsonWriter::Style::Indented : JsonWriter::Style::OneLine);
    ExitStatus status = Success;
    for (const std::string& name : options.files) {
        const InspectedFile file(name, how);
        if (options.flat) {
            writeFlatRecord(writer, file.facts(), file.file(), record);
        } else {
            writeRecord(writer, file.facts(), file.file(), record);
        }
        writer.flush();
        if (file.error()) {
            err << "corvinex: " << name << ": " << file.error().message() << '\n';
        }
        if (!file.isImage()) {
            status = Failed;
        }
        if (!out) {
            break;
        }
    }
    return out.flush() ? status : OutputFailed;
}

ExitStatus runJson(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    return json({.files = arguments.operands(),
                 .tags = arguments.texts("tag"),
                 .headerOffset = arguments.whole("header-offset"),
                 .maxValues = arguments.whole("max-values"),
                 .flat = arguments.isGiven("flat"),
                 .pretty = arguments.isGiven("pretty"),
                 .numeric = arguments.isGiven("numeric")},
                out, err);
}

}  // namespace tool
