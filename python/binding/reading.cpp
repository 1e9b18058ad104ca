#include <dlfcn.h>
#include <pybind11/stl.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "host/loading/module.h"
#include "host/messages/message_catalog.h"
#include "python/binding/bindings.h"
#include "python/binding/result.h"
#include "python/binding/texts.h"
#include "python/binding/without_gil.h"
#include "tool/file_names.h"
#include "tool/input_file.h"
#include "tool/read_plan.h"
#include "tool/text_display.h"

// Reading a file as the tool's command show does: the header is found, and a chain of directories
// that comes back on itself is cut.

namespace py = pybind11;

namespace python {
namespace {

/// The module lies in a folder beside the library of its host, wherever that was loaded from.
std::filesystem::path moduleLocation() {
    Dl_info host{};
    if (::dladdr(reinterpret_cast<const void*>(&host::livingValues), &host) == 0) {
        throw std::runtime_error("the system does not tell where the host's library lies");
    }
    return std::filesystem::path(host.dli_fname).parent_path() / "corvinex" / "corvinex.so";
}

const host::Module& module() {
    // Never destroyed: threads may still read while the process ends.
    static const host::Module* const lasting =
        std::make_unique<host::Module>(moduleLocation()).release();
    return *lasting;
}

struct Request {
    std::string path;
    tool::ReadRequest read;
};

/// What a read gave, before anything of Python is made of it.
struct Outcome {
    std::shared_ptr<Output> output = std::make_shared<Output>();
    host::CallResult result;
    std::string planWarning;
    int systemError = 0;  ///< of a file that was not handed to the module; or 0
};

/// The tool has a meaning for this name that Python has not.
std::string pathOf(const std::string& name) {
    return name == "-" ? "./-" : name;
}

void readFile(const Request& request, Outcome& outcome) {
    const tool::InputFile input(pathOf(request.path), 0);
    input.refuseUnreadable();
    outcome.output->moduleName = input.moduleName();
    outcome.output->askedName = request.path;
    outcome.output->isRenamed = input.moduleName() != tool::lenientUtf16(request.path);
    tool::ReadPlan plan = planRead(input.path(), request.read);
    outcome.planWarning = std::move(plan.warning);
    outcome.result =
        module().call(input.moduleName(), static_cast<double>(plan.headerOffset),
                      static_cast<double>(request.read.skip), static_cast<double>(plan.limit));
    outcome.output->value = std::move(outcome.result.output);
}

void readOrRefuse(const Request& request, Outcome& outcome) {
    try {
        readFile(request, outcome);
    } catch (const tool::InputRefused& refused) {
        outcome.result.failure = host::Failure{.report = std::nullopt, .message = refused.what()};
        outcome.systemError = refused.systemError();
    }
    if (outcome.result.failure && outcome.result.failure->isOutOfMemory) {
        throw std::bad_alloc();
    }
}

/// A report as ID, arguments and text. The file has the name that was asked for.
py::tuple reportTuple(const host::Report& report, const Output& output) {
    const tool::FileNames names(output.moduleName, tool::lenientUtf16(output.askedName));
    host::Report told = report;
    py::tuple arguments(report.arguments.size());
    for (std::size_t i = 0; i < report.arguments.size(); ++i) {
        auto& argument = told.arguments[i];
        if (argument.text) {
            argument.text = std::u16string(names.told(*argument.text));
            arguments[i] = textFrom(*argument.text);
        } else {
            arguments[i] = py::int_(argument.number);
        }
    }
    return py::make_tuple(report.id, arguments, textFrom(host::messageText(told)));
}

py::list reportList(const Outcome& outcome) {
    py::list reports;
    if (!outcome.planWarning.empty()) {
        reports.append(py::make_tuple(py::none(), py::tuple(), textFrom(outcome.planWarning)));
    }
    for (const host::Report& warning : outcome.result.warnings) {
        reports.append(reportTuple(warning, *outcome.output));
    }
    return reports;
}

py::object failureOf(const Outcome& outcome) {
    if (!outcome.result.failure) {
        return py::none();
    }
    const host::Failure& failure = *outcome.result.failure;
    const py::tuple report =
        failure.report ? reportTuple(*failure.report, *outcome.output)
                       : py::make_tuple(py::none(), py::tuple(), textFrom(failure.message));
    return py::make_tuple(report, outcome.systemError);
}

py::object outputOf(Outcome& outcome) {
    const zxArray* const value = outcome.output->value.get();
    if (value == nullptr || host::classOf(*value) != host::ValueClass::Struct) {
        return py::none();
    }
    return py::cast(StructArray(std::move(outcome.output), *value));
}

py::tuple read(std::string path, std::optional<std::uint64_t> headerOffset, std::uint64_t skip,
               std::uint64_t limit) {
    const Request request{
        .path = std::move(path),
        .read = {.headerOffset = headerOffset, .skip = skip, .limit = limit},
    };
    Outcome outcome;
    withoutGil([&] { readOrRefuse(request, outcome); });
    const py::list reports = reportList(outcome);
    const py::object failure = failureOf(outcome);
    return py::make_tuple(outputOf(outcome), reports, failure);
}

}  // namespace

void bindReading(py::module_& extension) {
    // At once: a package that misses a part cannot be imported.
    try {
        static_cast<void>(module());
    } catch (const std::runtime_error& error) {
        throw py::import_error(error.what());
    }
    extension.def("read", read, py::arg("path"), py::arg("header_offset"), py::arg("skip"),
                  py::arg("limit"));
}

}  // namespace python
