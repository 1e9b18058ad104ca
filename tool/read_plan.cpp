#include "tool/read_plan.h"

#include "tool/chain_check.h"
#include "tool/directory_reader.h"
#include "tool/endless_chain.h"
#include "tool/jpeg_exif.h"
#include "tool/positioned_file.h"

namespace tool {
namespace {

std::uint64_t headerOffsetOf(PositionedFile& file, const ReadRequest& request) {
    if (request.headerOffset) {
        return *request.headerOffset;
    }
    if (!startsAsJpeg(file)) {
        return 0;
    }
    const auto found = findExifTiffHeader(file);
    if (!found) {
        throw UnreadableFile("this JPEG file holds no EXIF block");
    }
    return *found;
}

std::string comesBackText(std::uint64_t directories) {
    const bool one = directories == 1;
    return "the chain of directories comes back on itself; reading its " +
           (one ? std::string("one directory") : std::to_string(directories) + " directories") +
           " once";
}

void setLimit(ReadPlan& plan, const DirectoryReader& reader, std::uint64_t start) {
    const Chain chain = checkChain(reader, start);
    if (chain.comesBack) {
        plan.limit = chain.directories;
        plan.warning = comesBackText(chain.directories);
    } else {
        plan.limit = directoriesAtMost(reader);
    }
}

}  // namespace

ReadPlan planRead(const std::string& path, const ReadRequest& request) {
    PositionedFile file(path);
    ReadPlan plan;
    plan.headerOffset = headerOffsetOf(file, request);
    plan.limit = request.limit;
    const auto reader = DirectoryReader::open(file, plan.headerOffset);
    const auto start = reader ? firstDirectoryRead(*reader, request.skip) : std::nullopt;
    if (!start) {
        return plan;  // the module will say what is wrong
    }
    if (request.limit == 0) {
        setLimit(plan, *reader, *start);
    }
    if (mayNeverEnd(*reader, *start, plan.limit)) {
        throw UnreadableFile(
            "a chain of directories comes back on itself over directories that yield no field; "
            "reading it might never end");
    }
    return plan;
}

}  // namespace tool
