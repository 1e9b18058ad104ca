#include "tool/catalogue/scan_command.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "inspect/reading/number_text.h"
#include "tool/catalogue/absolute_path.h"
#include "tool/catalogue/catalogue.h"
#include "tool/catalogue/scan_lock.h"
#include "tool/catalogue/scan_run.h"
#include "tool/inspected_file.h"
#include "tool/interrupt_watch.h"
#include "tool/many_files.h"
#include "tool/text_display.h"
#include "tool/usage_error.h"

namespace tool {
namespace {

using corvinex::inspect::Status;
using corvinex::inspect::reading::countText;
using corvinex::inspect::reading::decimalText;
using corvinex::inspect::reading::groupedText;

/// Whether a name is missing in a folder that is there. Of a folder that is missing itself nobody
/// knows what it holds.
bool isGoneFromItsFolder(const std::string& path) {
    std::error_code ignored;
    const std::filesystem::path name(path);
    return std::filesystem::symlink_status(name, ignored).type() ==
               std::filesystem::file_type::not_found &&
           std::filesystem::is_directory(name.parent_path(), ignored);
}

/// The paths whose gone files are to be taken out. One that is gone itself and has rows is no
/// operand any more: it would get a row that tells of its absence.
std::vector<std::string> takeRoots(std::vector<std::string>& operands, const std::string& folder,
                                   Catalogue& catalogue) {
    AbsolutePaths paths(folder);
    std::vector<std::string> roots;
    std::erase_if(operands, [&](const std::string& operand) {
        std::string root = paths.of(operand);
        std::error_code ignored;
        const bool isGone = isGoneFromItsFolder(root) && catalogue.hasBelow(root);
        if (isGone || std::filesystem::exists(operand, ignored)) {
            roots.push_back(std::move(root));
        }
        return isGone;
    });
    return roots;
}

void printCounts(std::ostream& err, const Catalogue& catalogue, const ScanCounts& counts,
                 std::chrono::duration<double> elapsed) {
    const double seconds = std::max(elapsed.count(), 1e-3);
    err << countText(counts.found, "file", "files") << " found in "
        << decimalText(seconds, seconds < 1 ? 3 : 1).value_or("0")
        << " s: " << groupedText(counts.written) << " written, " << groupedText(counts.unchanged)
        << " unchanged";
    if (counts.removed != 0) {
        err << ", " << groupedText(counts.removed) << " gone";
    }
    err << '\n';
    for (const Status status : {Status::Ok, Status::Warnings, Status::Damaged, Status::NoMetadata,
                                Status::NotAnImage, Status::Unreadable}) {
        const std::string_view word = corvinex::inspect::statusName(status);
        if (const std::uint64_t number = catalogue.writtenWith(word); number != 0) {
            err << "  " << word << ": " << groupedText(number) << '\n';
        }
    }
}

/// One name for the file whatever links lead to it. The library takes some short names for a
/// database in memory.
std::string catalogueFile(const std::string& name) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(name);
    const auto resolved = std::filesystem::weakly_canonical(path, error);
    return error ? path.string() : resolved.string();
}

/// Waits until no other scan writes the catalogue. False after an interrupt.
bool waitForLock(ScanLock& lock, const std::string& name, bool isQuiet, std::ostream& err) {
    constexpr std::chrono::milliseconds betweenTries{100};
    for (bool isTold = isQuiet; !lock.take(); std::this_thread::sleep_for(betweenTries)) {
        if (InterruptWatch::isInterrupted()) {
            return false;
        }
        if (!isTold) {
            err << "corvinex: " << visibleText(name) << ": waits for another scan" << std::endl;
            isTold = true;
        }
    }
    return true;
}

ExitStatus scanInto(Catalogue& catalogue, const std::string& path, const Arguments& arguments,
                    ManyFiles files, std::ostream& err) {
    const auto start = std::chrono::steady_clock::now();
    ScanOptions options{.folder = std::filesystem::current_path().string(),
                        .maxValues = arguments.whole("max-values").value_or(0),
                        .readsAll = arguments.isGiven("force"),
                        .leftOut = {}};
    catalogue.beginScan({.version = CORVINEX_VERSION,
                         .folder = options.folder,
                         .maxValues = options.maxValues,
                         .headerOffset = files.how.headerOffset});
    // Now that rows were written, all files of the database are there.
    for (const char* const ending : {"", "-wal", "-shm", "-lock"}) {
        if (const auto identity = identityOf(path + ending)) {
            options.leftOut.push_back(*identity);
        }
    }
    const bool prunes = arguments.isGiven("prune");
    const auto roots = prunes ? takeRoots(files.paths.operands, options.folder, catalogue)
                              : std::vector<std::string>();
    ScanRun run(files, options, catalogue, err);
    run.run();
    ScanCounts counts = run.counts();
    if (InterruptWatch::isInterrupted()) {
        err << "corvinex: interrupted; " << countText(counts.written, "file is", "files are")
            << " written, and the next scan goes on from there\n";
        return Failed;
    }
    if (counts.found != counts.written + counts.unchanged) {
        throw DatabaseError(0, "of " + countText(counts.found, "file", "files") + " only " +
                                   groupedText(counts.written) + " are in it");
    }
    catalogue.checkRows();
    const Pruning pruning = prunes ? catalogue.removeGone(roots, options.readsAll) : Pruning();
    counts.removed = pruning.removed;
    catalogue.finishScan(counts);
    if (!files.isQuiet) {
        if (const std::uint64_t number = catalogue.readOtherwise(); number != 0) {
            err << "corvinex: " << countText(number, "unchanged file was", "unchanged files were")
                << " read with another --max-values or --header-offset; --force reads again\n";
        }
        printCounts(err, catalogue, counts, std::chrono::steady_clock::now() - start);
    }
    for (const std::string& root : pruning.refused) {
        err << "corvinex: " << visibleText(root)
            << ": none of its files is there any more, so their rows stay; is a disk missing? With "
               "--force they are taken out\n";
    }
    if (!pruning.refused.empty()) {
        return OutputFailed;
    }
    const auto unreadable = corvinex::inspect::statusName(Status::Unreadable);
    return catalogue.writtenWith(unreadable) == 0 ? Success : Failed;
}

ExitStatus scan(const Arguments& arguments, const ManyFiles& files, const std::string& name,
                std::ostream& err) {
    const std::string path = catalogueFile(name);
    bool isLocked = false;
    std::optional<ScanLock> lock;
    try {
        lock.emplace(path);
        isLocked = waitForLock(*lock, name, files.isQuiet, err);
    } catch (const std::system_error& error) {
        throw DatabaseError(0, "it cannot be opened or made: " + error.code().message());
    }
    if (!isLocked) {
        return Failed;
    }
    Catalogue catalogue(path);
    try {
        return scanInto(catalogue, path, arguments, files, err);
    } catch (const DatabaseError& error) {
        throw DatabaseError(
            error.code(), std::string(error.what()) +
                              (catalogue.hasCommitted() ? "; what was written before stays" : ""));
    }
}

}  // namespace

ExitStatus runScan(const Arguments& arguments, std::ostream& /*out*/, std::ostream& err) {
    const auto name = arguments.text("output");
    if (!name || name->empty()) {
        throw UsageError("-o CATALOGUE is missing");
    }
    if (*name == InspectedFile::standardInput) {
        throw UsageError("a catalogue cannot be written to the standard output");
    }
    if (hasImageEnding(*name)) {
        throw UsageError("-o: " + visibleText(*name) + " has the ending of an image");
    }
    const ManyFiles files = manyFiles(arguments);
    if (std::ranges::find(files.paths.operands, InspectedFile::standardInput) !=
        files.paths.operands.end()) {
        throw UsageError("the standard input has no place in a catalogue");
    }
    // The catalogue is closed before an interrupt ends the process.
    const InterruptWatch watch;
    try {
        return scan(arguments, files, std::string(*name), err);
    } catch (const DatabaseError& error) {
        err << "corvinex: " << visibleText(*name) << ": " << error.what() << '\n';
        return OutputFailed;
    }
}

}  // namespace tool
