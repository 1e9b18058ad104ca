#include "tool/read_plan.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <new>
#include <system_error>

#include "inspect/file_content.h"
#include "tool/chain_summary.h"
#include "tool/header_search.h"
#include "tool/input_refused.h"

namespace tool {
namespace {

using corvinex::inspect::Container;
using corvinex::inspect::FileContent;
using corvinex::inspect::HeaderLocation;

/// One more than the directories that fit side by side into a file, each with its count field, an
/// entry and a next offset. A chain of directories that overlap can have more.
std::uint64_t directoriesAtMost(std::uint64_t fileSize, const HeaderLocation& header) {
    const std::uint64_t smallest = header.container == Container::BigTiff ? 8 + 20 + 8 : 2 + 12 + 4;
    return fileSize / smallest + 1;
}

std::string directoriesText(std::uint64_t directories) {
    return directories == 1 ? "one directory" : std::to_string(directories) + " directories";
}

std::string comesBackText(const ChainSummary& chains, std::uint64_t limit) {
    const std::string chain =
        chains.mainComesBack ? "the chain of directories" : "a chain of sub-directories";
    const std::string reading = chains.mainComesBack && chains.mainDirectories == limit
                                    ? "its " + directoriesText(limit) + " once"
                                    : "at most " + directoriesText(limit) + " of a chain";
    return chain + " comes back on itself; reading " + reading;
}

constexpr const char* tooLongText =
    "the chain of directories has more entries than the file could hold";

/// A limit for a read that has none, where the chains ask for another than the file's size.
void setLimit(ReadPlan& plan, const ChainSummary& chains) {
    if (!chains.isMainKnown) {
        plan.limit = chains.mainDirectories;
        plan.warning = tooLongText + ("; reading its first " + directoriesText(plan.limit));
    } else if (chains.mainComesBack || (chains.anyComesBack && chains.isWhole)) {
        plan.limit = chains.isWhole ? chains.longest : chains.mainDirectories;
        plan.warning = comesBackText(chains, plan.limit);
    } else {
        plan.limit = std::max(plan.limit, chains.longest);
    }
}

/// Raises InputRefused where the chain holds no more directories than are to be skipped.
void refuseToSkipAll(const MainChain& chain, std::uint64_t skip) {
    const std::uint64_t started = chain.directories + (chain.endsCutOff ? 1 : 0);
    if (skip == 0 || started > skip) {
        return;
    }
    const std::string leavesNone = "; skipping " + std::to_string(skip) + " leaves none";
    if (chain.isTooLong) {
        throw InputRefused(
            tooLongText +
            (", and no more than its first " + directoriesText(chain.directories) + " are read") +
            leavesNone);
    }
    if (chain.isWhole) {
        throw InputRefused("the file has " + directoriesText(chain.directories) +
                           (chain.endsCutOff ? " and one that is cut off" : "") + leavesNone);
    }
}

/// How far the skipped directories and those asked for go along the main chain.
std::uint64_t reachOf(const ReadRequest& request) {
    constexpr std::uint64_t all = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t asked = request.limit == 0 ? all : request.limit;
    return asked > all - request.skip ? all : request.skip + asked;
}

void planDirectories(ReadPlan& plan, const FileContent& file, const ReadRequest& request) {
    if (file.directories.empty()) {
        return;  // the module will say what is wrong
    }
    DirectoryChains chains(file);
    plan.chain = mainChainOf(chains, reachOf(request));
    refuseToSkipAll(plan.chain, request.skip);
    if (chains.first() == DirectoryChains::nowhere) {
        return;
    }
    if (request.limit != 0 && !chains.isJpeg()) {
        return;  // any limit ends a chain of a TIFF
    }
    const auto start = static_cast<std::uint32_t>(request.skip);
    const ChainSummary summary = summarizeChains(chains, start, request.limit);
    if (summary.mayNeverEnd) {
        throw InputRefused(
            "a chain of directories comes back on itself over directories that yield no field; "
            "reading it might never end");
    }
    if (request.limit == 0) {
        setLimit(plan, summary);
    }
}

}  // namespace

ReadPlan planRead(const std::string& path, const ReadRequest& request) {
    const HeaderLocation header = locateHeader(path);
    ReadPlan plan;
    plan.headerOffset = request.headerOffset ? *request.headerOffset : headerOffsetIn(header);
    std::error_code unreadable;
    const std::uint64_t size = std::filesystem::file_size(path, unreadable);
    plan.limit =
        request.limit != 0 ? request.limit : directoriesAtMost(unreadable ? 0 : size, header);
    try {
        FileContent file(corvinex::inspect::Source::open(path));
        readHeader(file, {.headerOffset = plan.headerOffset});
        // The module takes the layout by the first bytes, whatever stands at the header offset.
        if (file.container && file.container == header.container) {
            readDirectories(file, corvinex::inspect::PointerRule::Module);
            planDirectories(plan, file, request);
        }
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::not_enough_memory) {
            throw std::bad_alloc();
        }
        // What is wrong with the file is the module's to say.
    }
    return plan;
}

}  // namespace tool
