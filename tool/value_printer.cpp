#include "tool/value_printer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tool/output_buffer.h"
#include "tool/text_display.h"
#include "tool/value_summary.h"

namespace tool {
namespace {

constexpr std::size_t indentStep = 2;

// The same in every directory of a file.
constexpr std::array<std::string_view, 6> fileFactNames{"Filename", "FileModDate",     "FileSize",
                                                        "Format",   "FormatSignature", "ByteOrder"};

bool isFileFact(std::string_view name) {
    return std::find(fileFactNames.begin(), fileFactNames.end(), name) != fileFactNames.end();
}

bool isStruct(const zxArray* value) {
    return value != nullptr && host::classOf(*value) == host::ValueClass::Struct;
}

bool isDirectoryList(const zxArray* value) {
    return value != nullptr && host::classOf(*value) == host::ValueClass::Cell &&
           isStruct(host::sizeOf(*value).columns > 0 ? host::cellAt(*value, 0) : nullptr);
}

bool holdsDirectories(const zxArray* value) {
    return isStruct(value) || isDirectoryList(value);
}

/// Main directories hold the facts of their file; directories of other kinds have fields of their
/// own only.
bool holdsFileFacts(std::span<const std::string> names) {
    return !names.empty() && names.front() == fileFactNames.front();
}

/// The place of a field; past the last where there is none of that name, which fieldAt refuses.
std::size_t placeOf(const zxArray& array, std::string_view name) {
    const auto names = host::fieldNamesOf(array);
    return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
}

/// Prints the block of one file.
class FilePrinter {
  public:
    FilePrinter(std::ostream& out, const ShownFile& file, bool all)
        : out_(out), file_(file), all_(all) {}

    void print(const zxArray& output) {
        line(0, visibleText(file_.name));
        if (!isStruct(&output)) {
            line(indentStep, "no directories");
            return;
        }
        if (!all_) {
            fileFacts(output);
        }
        mainDirectories(output);
    }

  private:
    /// A field that may stand in the directories of an array.
    struct Column {
        std::string_view name;
        std::size_t field;  // its place in the array
    };
    /// One that stands in the directory being printed.
    struct ShownField {
        std::string_view name;
        const zxArray* value;
    };

    void fileFacts(const zxArray& directories) {
        const auto names = host::fieldNamesOf(directories);
        std::size_t width = 0;
        for (const std::string_view name : fileFactNames) {
            width = std::max(width, name.size());
        }
        for (std::size_t i = 0; i < names.size(); ++i) {
            const zxArray* value = host::fieldAt(directories, 0, i);
            if (value != nullptr && isFileFact(names[i])) {
                field({names[i], value}, width, indentStep);
            }
        }
    }

    void mainDirectories(const zxArray& directories) {
        const std::size_t count = host::sizeOf(directories).rows;
        const std::vector<Column> columns = columnsOf(directories);
        for (std::size_t i = 0; i < count; ++i) {
            ordinalLine(indentStep, "Directory", file_.places.placeOf(i), file_.places.total);
            directory(directories, i, columns, 2 * indentStep);
        }
    }

    /// The directories below a field, with headings where there are several.
    void directories(const zxArray& directories, std::size_t indent) {
        const std::size_t count = host::sizeOf(directories).rows;
        const bool headed = count > 1;
        const std::vector<Column> columns = columnsOf(directories);
        for (std::size_t i = 0; i < count; ++i) {
            if (headed) {
                ordinalLine(indent, "Directory", i + 1, count);
            }
            directory(directories, i, columns, headed ? indent + indentStep : indent);
        }
    }

    [[nodiscard]] std::vector<Column> columnsOf(const zxArray& directories) const {
        const auto names = host::fieldNamesOf(directories);
        const bool skipFileFacts = !all_ && holdsFileFacts(names);
        std::vector<Column> columns;
        columns.reserve(names.size());
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (!skipFileFacts || !isFileFact(names[i])) {
                columns.push_back({names[i], i});
            }
        }
        return columns;
    }

    void directory(const zxArray& directories, std::size_t element,
                   const std::vector<Column>& columns, std::size_t indent) {
        std::vector<ShownField> shown;
        shown.reserve(columns.size());
        std::size_t width = 0;
        for (const Column& column : columns) {
            const zxArray* value = host::fieldAt(directories, element, column.field);
            if (!all_ && value == nullptr) {
                continue;
            }
            shown.push_back({column.name, value});
            if (column.name.size() > width && !holdsDirectories(value)) {
                width = column.name.size();
            }
        }
        for (const ShownField& each : shown) {
            field(each, width, indent);
        }
    }

    void field(const ShownField& shown, std::size_t width, std::size_t indent) {
        const auto& [name, value] = shown;
        if (isStruct(value)) {
            line(indent, name);
            if (name == "UnknownTags") {
                unknownTags(*value, indent + indentStep);
            } else {
                directories(*value, indent + indentStep);
            }
        } else if (isDirectoryList(value)) {
            directoryList(name, *value, indent);
        } else {
            out_.append(indent, ' ');
            out_.append(name);
            out_.append(std::max(width, name.size()) - name.size() + 2, ' ');
            if (name == fileFactNames.front()) {
                writeQuotedText(out_, file_.name);
            } else {
                writeSummary(out_, value, all_);
            }
            out_.append('\n');
        }
    }

    void directoryList(std::string_view name, const zxArray& list, std::size_t indent) {
        const std::size_t count = host::sizeOf(list).columns;
        for (std::size_t i = 0; i < count; ++i) {
            ordinalLine(indent, name, i + 1, count);
            const zxArray* set = host::cellAt(list, i);
            if (isStruct(set)) {
                directories(*set, indent + indentStep);
            }
        }
    }

    void unknownTags(const zxArray& tags, std::size_t indent) {
        const std::size_t id = placeOf(tags, "ID");
        const std::size_t offset = placeOf(tags, "Offset");
        const std::size_t value = placeOf(tags, "Value");
        for (std::size_t i = 0; i < host::sizeOf(tags).rows; ++i) {
            out_.append(indent, ' ');
            out_.append("ID ");
            writeSummary(out_, host::fieldAt(tags, i, id), all_);
            out_.append(", offset ");
            writeSummary(out_, host::fieldAt(tags, i, offset), all_);
            out_.append(": ");
            writeSummary(out_, host::fieldAt(tags, i, value), all_);
            out_.append('\n');
        }
    }

    void ordinalLine(std::size_t indent, std::string_view what, std::uint64_t place,
                     std::optional<std::uint64_t> total) {
        out_.append(indent, ' ');
        out_.append(what);
        out_.append(' ');
        out_.appendNumber(place);
        if (total) {
            out_.append(" of ");
            out_.appendNumber(*total);
        }
        out_.append('\n');
    }

    void line(std::size_t indent, std::string_view text) {
        out_.append(indent, ' ');
        out_.append(text);
        out_.append('\n');
    }

    OutputBuffer out_;
    ShownFile file_;
    bool all_;
};

}  // namespace

void ValuePrinter::printFile(const ShownFile& file, const zxArray& output) {
    FilePrinter(out_, file, all_).print(output);
}

}  // namespace tool
