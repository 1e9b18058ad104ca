#include "tool/json_command.h"

#include <cstddef>

#include "inspect/record/json_writer.h"
#include "inspect/record/record.h"
#include "tool/many_files.h"
#include "tool/tag_catalog.h"

namespace tool {

ExitStatus runJson(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    using corvinex::inspect::JsonWriter;
    const corvinex::inspect::RecordOptions options{.maxValues = arguments.whole("max-values"),
                                                   .tags = tagsAskedFor(arguments.texts("tag")),
                                                   .codesAsNumbers = arguments.isGiven("numeric")};
    const auto style =
        arguments.isGiven("pretty") ? JsonWriter::Style::Indented : JsonWriter::Style::OneLine;
    const auto write = arguments.isGiven("flat") ? corvinex::inspect::writeFlatRecord
                                                 : corvinex::inspect::writeRecord;
    const auto task = [&](const InspectedFile& file, corvinex::inspect::TextSink& sink,
                          std::size_t /*thread*/) {
        JsonWriter json(sink, style);
        write(json, file.facts(), file.file(), options);
        json.flush();
    };
    return inspectFiles(manyFiles(arguments), task, out, err);
}

}  // namespace tool
