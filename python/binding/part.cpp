#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "python/binding/bindings.h"
#include "python/binding/refused_memory.h"
#include "python/binding/without_gil.h"
#include "tool/catalogue/catalogue_merge.h"
#include "tool/catalogue/part_writer.h"

namespace py = pybind11;

namespace python {
namespace {

/// Does what a function does without holding the interpreter. What a database or the system refuses
/// is an OSError.
template <class Function>
auto orSystemError(const std::string& path, Function function) -> decltype(function()) {
    std::string reason;
    try {
        std::optional<decltype(function())> result;
        withoutGil([&] { result.emplace(function()); });
        return *std::move(result);
    } catch (const tool::DatabaseError& error) {
        reason = path + ": " + error.what();
    } catch (const std::system_error& error) {
        reason = error.what();
    }
    // A name may be no UTF-8.
    const auto text = py::reinterpret_steal<py::object>(
        PyUnicode_DecodeFSDefaultAndSize(reason.data(), static_cast<Py_ssize_t>(reason.size())));
    PyErr_SetObject(PyExc_OSError, text.ptr());
    throw py::error_already_set();
}

void append(std::string& bytes, std::uint64_t number) {
    for (unsigned shift = 0; shift < 64; shift += 8) {
        bytes.push_back(static_cast<char>(number >> shift & 0xFFU));
    }
}

/// For each stamp 1 where there is one, then size, time and inode, lowest byte first: the same on
/// every machine, and no object for each of the stamps.
std::string packed(std::span<const std::optional<tool::FileStamp>> stamps) {
    std::string bytes;
    for (const auto& stamp : stamps) {
        const tool::FileStamp known = stamp.value_or(tool::FileStamp());
        bytes.push_back(stamp ? '\1' : '\0');
        append(bytes, known.size);
        append(bytes, static_cast<std::uint64_t>(known.modified));
        append(bytes, known.inode);
    }
    return bytes;
}

py::bytes stampsOf(const std::vector<std::string>& names) {
    std::vector<std::optional<tool::FileStamp>> stamps;
    stamps.reserve(names.size());
    withoutGil([&] { std::ranges::transform(names, std::back_inserter(stamps), tool::stampOf); });
    return packed(stamps);
}

py::dict resultOf(const tool::PartResult& part) {
    py::dict statuses;
    for (const auto& [status, number] : part.byStatus) {
        statuses[py::str(std::string(status))] = number;
    }
    py::list unreadable;
    for (const tool::UnreadableFile& file : part.unreadable) {
        unreadable.append(py::make_tuple(py::bytes(file.name), file.reason));
    }
    using py::literals::operator""_a;
    return py::dict("records"_a = part.records, "passed_over"_a = part.passedOver,
                    "repeated"_a = part.repeated, "directories"_a = part.directories,
                    "tags"_a = part.tags, "findings"_a = part.findings, "by_status"_a = statuses,
                    "unreadable"_a = unreadable, "stamps"_a = py::bytes(packed(part.stamps)),
                    "is_steady"_a = part.isSteady);
}

py::dict writePart(const std::vector<std::string>& names, const std::string& asked,
                   const std::string& records, const std::string& catalogue,
                   std::uint64_t maxValues, std::optional<std::uint64_t> headerOffset,
                   std::map<std::size_t, std::string> refused) {
    if (names.size() != asked.size()) {
        throw py::value_error("asked needs a byte for each name");
    }
    std::vector<tool::ListedPath> files;
    files.reserve(names.size());
    for (std::size_t place = 0; place < names.size(); ++place) {
        files.push_back({names[place], asked[place] != '\0'});
    }
    tool::PartOptions options{.records = records,
                              .catalogue = catalogue,
                              .maxValues = maxValues,
                              .headerOffset = headerOffset,
                              .refused = std::move(refused)};
    return resultOf(
        orSystemError(catalogue, [&] { return tool::writePart(files, std::move(options)); }));
}

py::tuple tupleOf(const tool::RowCounts& rows) {
    return py::make_tuple(rows.files, rows.directories, rows.tags, rows.findings);
}

/// A merge with the name of what it makes, for messages.
class Merge {
  public:
    Merge(std::string path, const tool::MergedScan& scan)
        : path_(std::move(path)), merge_(orSystemError(path_, [&] {
              return std::make_unique<tool::CatalogueMerge>(path_, scan);
          })) {}
    py::tuple add(const std::string& part) {
        const auto added = orSystemError(part, [&] { return merge_->add(part); });
        return py::make_tuple(tupleOf(added.rows), added.repeated);
    }
    py::tuple finish() {
        const auto rows = orSystemError(path_, [&] { return merge_->finish(); });
        merge_.reset();  // closes the database
        return tupleOf(rows);
    }

  private:
    std::string path_;
    std::unique_ptr<tool::CatalogueMerge> merge_;
};

std::unique_ptr<Merge> makeMerge(std::string path, std::string started, std::string finished,
                                 std::string version, std::string folder, std::uint64_t maxValues,
                                 std::optional<std::uint64_t> headerOffset) {
    return std::make_unique<Merge>(std::move(path),
                                   tool::MergedScan{.started = std::move(started),
                                                    .finished = std::move(finished),
                                                    .version = std::move(version),
                                                    .folder = std::move(folder),
                                                    .maxValues = maxValues,
                                                    .headerOffset = headerOffset});
}

}  // namespace

void bindParts(py::module_& extension) {
    extension.def("write_part", &writePart, py::arg("names"), py::arg("asked"), py::kw_only(),
                  py::arg("records"), py::arg("catalogue"), py::arg("max_values"),
                  py::arg("header_offset"), py::arg("refused"),
                  "Reads files into a file of records and a catalogue, each opened once.");
    extension.def(
        "stamps", &stampsOf, py::arg("names"),
        "What tells files from others and from what they were, as write_part returns it.");
    extension.def(
        "why_unreadable",
        [](const std::string& name, std::optional<std::uint64_t> headerOffset) {
            return orSystemError(name, [&] { return tool::whyUnreadable(name, headerOffset); });
        },
        py::arg("name"), py::arg("header_offset"),
        "Why a file cannot be read; None for one that can.");
    addClass<Merge>(extension, "Merge", "Joins catalogues into a new one.")
        .def(py::init(&makeMerge), py::arg("path"), py::kw_only(), py::arg("started"),
             py::arg("finished"), py::arg("version"), py::arg("folder"), py::arg("max_values"),
             py::arg("header_offset"))
        .def("add", &Merge::add, py::arg("part"),
             "Adds a catalogue. Returns the rows of files, directories, tags and findings that "
             "were\n"
             "added, and the number of files that an earlier part had.")
        .def("finish", &Merge::finish,
             "Makes the indexes, counts the rows and closes the catalogue.");
}

}  // namespace python
