#include <fcntl.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cerrno>
#include <charconv>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include "corvinex/derived.h"
#include "corvinex/directory.h"
#include "corvinex/finding.h"
#include "inspect/record/json_writer.h"
#include "python/binding/bindings.h"
#include "python/binding/entry_object.h"
#include "python/binding/entry_value.h"
#include "python/binding/inspection.h"
#include "python/binding/rational.h"
#include "python/binding/refused_memory.h"
#include "python/binding/word.h"
#include "tool/tag_catalog.h"

namespace py = pybind11;

namespace python {
namespace {

using corvinex::inspect::DerivedFact;
using corvinex::inspect::Directory;
using corvinex::inspect::Entry;
using corvinex::inspect::File;
using corvinex::inspect::Finding;

/// A descriptor of our own for the same open file.
tool::FileDescriptor duplicateOf(int number) {
    constexpr int behindStandardStreams = 3;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system has no other
    tool::FileDescriptor own(fcntl(number, F_DUPFD_CLOEXEC, behindStandardStreams));
    if (!own.isOpen()) {
        PyErr_SetFromErrno(PyExc_OSError);
        throw py::error_already_set();
    }
    return own;
}

/// Bytes, else a descriptor, else a name.
std::unique_ptr<Inspection> openInspection(py::handle content, std::optional<int> descriptor,
                                           std::optional<std::string> name,
                                           std::optional<std::uint64_t> headerOffset,
                                           const std::vector<Word>& tags) {
    Inspection::Input input;
    input.name = std::move(name);
    if (!content.is_none()) {
        input.buffer = HeldBuffer(content);
        input.isBytes = true;
    } else if (descriptor) {
        input.descriptor = duplicateOf(*descriptor);
    }
    return std::make_unique<Inspection>(
        std::move(input), corvinex::inspect::Options{.headerOffset = headerOffset}, textsOf(tags));
}

struct FactObject {
    py::object operator()(std::uint64_t number) const { return py::int_(number); }
    py::object operator()(double number) const { return py::float_(number); }
    py::object operator()(const std::string& text) const { return toText(text); }
    py::object operator()(const std::vector<double>& numbers) const { return py::cast(numbers); }
};

py::dict factsObject(const std::vector<DerivedFact>& facts) {
    py::dict dict;
    for (const DerivedFact& fact : facts) {
        dict[toText(fact.name)] = std::visit(FactObject(), fact.value);
    }
    return dict;
}

struct ArgumentObject {
    py::object operator()(std::uint64_t number) const { return py::int_(number); }
    py::object operator()(std::int64_t number) const { return py::int_(number); }
    py::object operator()(const std::string& text) const { return toText(text); }
};

/// The members of a finding in their order.
py::tuple findingObject(const Finding& finding) {
    py::tuple arguments(finding.arguments.size());
    for (std::size_t place = 0; place < finding.arguments.size(); ++place) {
        arguments[place] = std::visit(ArgumentObject(), finding.arguments[place]);
    }
    return py::make_tuple(toText(finding.id),
                          toText(corvinex::inspect::severityName(finding.severity)),
                          toText(finding.directory), finding.tag, arguments, toText(finding.text));
}

py::list findingsOf(const Inspection& inspection) {
    // The list is the file's own and stays where it is, but another thread may close the file.
    const auto findings = inspection.read([](const File& file) {
        return std::vector<Finding>(file.findings().begin(), file.findings().end());
    });
    py::list list(findings.size());
    for (std::size_t place = 0; place < findings.size(); ++place) {
        list[place] = findingObject(findings[place]);
    }
    return list;
}

std::string_view statusOf(const Inspection& inspection) {
    return inspection.read(
        [](const File& file) { return corvinex::inspect::statusName(file.status()); });
}

py::object containerOf(const Inspection& inspection) {
    const auto container = inspection.file().container();
    return container ? py::object(toText(corvinex::inspect::containerName(*container)))
                     : py::object(py::none());
}

py::object byteOrderOf(const Inspection& inspection) {
    const auto order = inspection.file().byteOrder();
    return order ? py::object(toText(corvinex::inspect::byteOrderName(*order)))
                 : py::object(py::none());
}

const Directory& directoryOf(const Inspection& inspection, std::size_t index) {
    const std::span<const Directory> directories = inspection.file().directories();
    if (index >= directories.size()) {
        throw py::index_error("the file has no such directory");
    }
    return directories[index];
}

py::tuple describeDirectory(const Inspection& inspection, std::size_t index) {
    const Directory& directory = directoryOf(inspection, index);
    return py::make_tuple(toText(directory.path()),
                          toText(corvinex::inspect::kindName(directory.kind())),
                          directory.offset());
}

/// The place of an entry among all entries of its file.
std::uint32_t indexOf(const File& file, const Entry& entry) {
    return static_cast<std::uint32_t>(&entry - file.entries().data());
}

py::list entriesOf(const py::object& self, std::size_t index) {
    const auto& inspection = self.cast<const Inspection&>();
    const Directory& directory = directoryOf(inspection, index);
    const std::span<const Entry> entries = directory.entries();
    std::uint32_t place = directory.record().firstEntry;
    if (!inspection.isSelective()) {
        py::list all(entries.size());
        for (std::size_t number = 0; number < entries.size(); ++number) {
            PyList_SET_ITEM(all.ptr(), static_cast<Py_ssize_t>(number),
                            makeEntry(self, inspection, place++).release().ptr());
        }
        return all;
    }
    const std::string path = directory.path();
    py::list selected;
    for (const Entry& entry : entries) {
        if (inspection.options().tags.contains(entry, path)) {
            selected.append(makeEntry(self, inspection, place));
        }
        ++place;
    }
    return selected;
}

/// Where a directory with this path may be: among all, or, as the main chain comes first and its
/// paths are its numbers, at one place.
std::span<const Directory> directoriesToSearch(const Inspection& inspection,
                                               std::string_view path) {
    const std::span<const Directory> all = inspection.file().directories();
    std::size_t place = 0;
    const char* const end = path.data() + path.size();
    const auto read = std::from_chars(path.data(), end, place);
    const bool isPlace = read.ec == std::errc() && read.ptr == end && place < all.size();
    return isPlace && all[place].path() == path ? all.subspan(place, 1) : all;
}

std::optional<std::size_t> findDirectory(const Inspection& inspection, const Word& path) {
    for (const Directory& directory : directoriesToSearch(inspection, path.text)) {
        if (directory.path() == path.text) {
            return static_cast<std::size_t>(&directory - inspection.file().directories().data());
        }
    }
    return std::nullopt;
}

/// What stands before the last point of a word, in small letters as paths are.
std::string pathBefore(std::string_view word) {
    const std::size_t point = word.rfind('.');
    return point == std::string_view::npos ? std::string() : tool::lowered(word.substr(0, point));
}

/// The first entry that a word selects in one directory, or in the file; None where there is none.
py::object findEntry(const py::object& self, const Word& word, std::optional<std::size_t> index) {
    const auto& inspection = self.cast<const Inspection&>();
    const std::string full = tool::fullName(word.text);
    // Tags that are not known have no name, which is none to ask for.
    if (full.empty() || full.ends_with('.')) {
        return py::none();
    }
    const corvinex::inspect::TagSelection wanted(std::span(&full, 1));
    const std::string askedPath = pathBefore(full);
    const std::span<const Directory> searched = index
                                                    ? std::span(&directoryOf(inspection, *index), 1)
                                                    : directoriesToSearch(inspection, askedPath);
    for (const Directory& directory : searched) {
        const std::string path = directory.path();
        if (!askedPath.empty() && path != askedPath) {
            continue;
        }
        for (const Entry& entry : directory.entries()) {
            if (wanted.contains(entry, path) && inspection.options().tags.contains(entry, path)) {
                return makeEntry(self, inspection, indexOf(inspection.file(), entry));
            }
        }
    }
    return py::none();
}

class StringSink final : public corvinex::inspect::TextSink {
  public:
    void write(std::string_view part) override { text.append(part); }
    std::string text;
};

py::str jsonOf(const Inspection& inspection) {
    const corvinex::inspect::FileFacts facts = inspection.facts();
    std::string line = inspection.read([&](const File& file) {
        // What the findings need may be unreadable; a record must not begin then.
        static_cast<void>(file.findings());
        StringSink sink;
        corvinex::inspect::JsonWriter json(sink, corvinex::inspect::JsonWriter::Style::OneLine);
        corvinex::inspect::writeRecord(json, facts, &file, inspection.options());
        json.flush();
        return std::move(sink.text);
    });
    line.pop_back();
    return toText(line);
}

}  // namespace

void bindInspection(py::module_& extension) {
    bindRational(extension);
    bindEntry(extension);
    addClass<Inspection>(extension, "Inspection",
                         "A file that is open for inspection. Any number of threads may use it.")
        .def(py::init(&openInspection), py::arg("content"), py::arg("descriptor"), py::arg("name"),
             py::arg("header_offset"), py::arg("tags"))
        .def_property_readonly("closed", &Inspection::isClosed)
        .def("close", &Inspection::close)
        .def_property_readonly("size", [](const Inspection& self) { return self.file().size(); })
        .def_property_readonly("modified",
                               [](const Inspection& self) { return self.file().modified(); })
        .def_property_readonly("container", &containerOf)
        .def_property_readonly("byte_order", &byteOrderOf)
        .def_property_readonly("header_offset",
                               [](const Inspection& self) { return self.file().headerOffset(); })
        .def_property_readonly("status", &statusOf)
        .def("findings", &findingsOf)
        .def("derived",
             [](const Inspection& self) {
                 return factsObject(self.read([](const File& file) { return file.derived(); }));
             })
        .def("directory_count",
             [](const Inspection& self) { return self.file().directories().size(); })
        .def("describe_directory", &describeDirectory, py::arg("index"))
        .def(
            "derived_of_directory",
            [](const Inspection& self, std::size_t index) {
                static_cast<void>(directoryOf(self, index));
                return factsObject(self.read(
                    [index](const File& file) { return file.directories()[index].derived(); }));
            },
            py::arg("index"))
        .def("entries", &entriesOf, py::arg("index"))
        .def("find", &findEntry, py::arg("word"), py::arg("index") = std::nullopt)
        .def("find_directory", &findDirectory, py::arg("path"))
        .def("to_json", &jsonOf);
    extension.def(
        "why_no_tag",
        [](const Word& word) {
            return tool::numbersMeantBy(word.text).empty()
                       ? std::optional(tool::noSuchTag(word.text))
                       : std::nullopt;
        },
        "Why a word means no tag; None for one that means any.");
    extension.def(
        "full_tag_name", [](const Word& word) { return tool::fullName(word.text); },
        "The word with the standard's name in place of a short one, as ICC.");
}

}  // namespace python
