#include "tool/show_command.h"

#include <exception>
#include <new>
#include <utility>

#include "tool/input_file.h"
#include "tool/memory_limit.h"
#include "tool/module_location.h"
#include "tool/text_display.h"
#include "tool/value_printer.h"

namespace tool {
namespace {

/// Shows one file after the other.
class FileShow {
  public:
    FileShow(const host::Module& module, const ShowOptions& options, std::ostream& out,
             std::ostream& err)
        : module_(module),
          options_(options),
          out_(out),
          err_(err),
          limit_(options.maxMemory),
          printer_(out, options.all) {}

    /// Reads and prints a file; false when that failed, and the reason is told.
    bool show(const std::string& name) {
        limit_.lift();
        Diagnostics diagnostics(err_, lenientUtf16(name), options_.warnings);
        try {
            return showInput(InputFile(name, limit_.forStandardInput()), diagnostics);
        } catch (const std::bad_alloc&) {
            out_.flush();
            diagnostics.error(limit_.exceededText());
        } catch (const std::exception& error) {
            diagnostics.error(error.what());
        }
        return false;
    }

  private:
    bool showInput(const InputFile& input, Diagnostics& diagnostics) {
        input.refuseUnreadable();
        limit_.setForFile(input.size());
        diagnostics.setModuleName(input.moduleName());
        const ReadPlan plan = planRead(input.path(), options_.request);
        if (!plan.warning.empty()) {
            diagnostics.warning(plan.warning);
        }
        const host::ValuePtr output = read(input, plan, diagnostics);
        if (!output) {
            return false;
        }
        if (!isFirst_) {
            out_ << '\n';
        }
        isFirst_ = false;
        const DirectoryPlaces places =
            placesIn(plan.chain, options_.request.skip, host::sizeOf(*output).rows);
        printer_.printFile({.name = input.askedName(), .places = places}, *output);
        return true;
    }

    /// The module's output for the file; null when there is none, and the reason is told.
    host::ValuePtr read(const InputFile& input, const ReadPlan& plan, Diagnostics& diagnostics) {
        host::CallResult result = module_.call(
            input.moduleName(), static_cast<double>(plan.headerOffset),
            static_cast<double>(options_.request.skip), static_cast<double>(plan.limit),
            [&diagnostics](const host::Report& report) { diagnostics.warning(report); });
        diagnostics.endOfWarnings();
        if (result.failure && result.failure->isOutOfMemory) {
            diagnostics.error(limit_.exceededText());
        } else if (result.failure) {
            diagnostics.error(*result.failure);
        }
        return std::move(result.output);
    }

    const host::Module& module_;
    const ShowOptions& options_;
    std::ostream& out_;
    std::ostream& err_;
    MemoryLimit limit_;
    ValuePrinter printer_;
    bool isFirst_ = true;
};

WarningsShown warningsShown(std::string_view word) {
    if (word == "all") {
        return WarningsShown::All;
    }
    return word == "none" ? WarningsShown::None : WarningsShown::First;
}

}  // namespace

ExitStatus show(const host::Module& module, const ShowOptions& options, std::ostream& out,
                std::ostream& err) {
    FileShow files(module, options, out, err);
    ExitStatus status = Success;
    for (const std::string& name : options.files) {
        if (!files.show(name)) {
            status = Failed;
        }
        // What is said of the next file comes after this block, also where both streams meet.
        if (!out.flush()) {
            return Failed;
        }
    }
    return status;
}

ExitStatus runShow(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    const ShowOptions options{
        .files = arguments.operands(),
        .request = {.headerOffset = arguments.whole("header-offset"),
                    .skip = arguments.whole("skip").value(),
                    .limit = arguments.whole("limit").value()},
        .all = arguments.isGiven("all"),
        .warnings = warningsShown(arguments.text("warnings").value()),
        .maxMemory = arguments.size("max-memory"),
    };
    return show(host::Module(moduleLocation()), options, out, err);
}

}  // namespace tool
