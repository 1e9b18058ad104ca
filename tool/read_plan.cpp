#include "tool/read_plan.h"

#include <algorithm>
#include <limits>

#include "tool/chain_check.h"
#include "tool/chain_survey.h"
#include "tool/directory_reader.h"
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

std::string directoriesText(std::uint64_t directories) {
    return directories == 1 ? "one directory" : std::to_string(directories) + " directories";
}

std::string comesBackText(const ChainSurvey& survey, std::uint64_t limit) {
    const std::string chain =
        survey.mainComesBack ? "the chain of directories" : "a chain of sub-directories";
    const std::string reading = survey.mainComesBack && survey.mainDirectories == limit
                                    ? "its " + directoriesText(limit) + " once"
                                    : "at most " + directoriesText(limit) + " of a chain";
    return chain + " comes back on itself; reading " + reading;
}

void setLimit(ReadPlan& plan, const DirectoryReader& reader, const ChainSurvey& survey) {
    if (survey.anyComesBack && survey.isWhole) {
        plan.limit = survey.longest;
        plan.warning = comesBackText(survey, plan.limit);
    } else if (survey.mainComesBack) {
        plan.limit = survey.mainDirectories;
        plan.warning = comesBackText(survey, plan.limit);
    } else {
        plan.limit = std::max(directoriesAtMost(reader), survey.longest);
    }
}

/// The main chain as far as the skipped directories and those asked for go.
MainChain chainFor(const DirectoryReader& reader, const ReadRequest& request) {
    constexpr std::uint64_t all = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t asked = request.limit == 0 ? all : request.limit;
    return followMainChain(reader, asked > all - request.skip ? all : request.skip + asked);
}

/// The main chain from its start on, which the survey has seen already unless it comes back.
MainChain wholeChain(const DirectoryReader& reader, const ChainSurvey& survey) {
    if (survey.mainComesBack) {
        return chainFor(reader, {});
    }
    return {.directories = survey.mainDirectories,
            .isWhole = true,
            .comesBackTo = std::nullopt,
            .mayLackDirectories = reader.isJpeg()};
}

}  // namespace

ReadPlan planRead(const std::string& path, const ReadRequest& request) {
    PositionedFile file(path);
    ReadPlan plan;
    plan.headerOffset = headerOffsetOf(file, request);
    plan.limit = request.limit;
    const auto reader = DirectoryReader::open(file, plan.headerOffset);
    if (reader && (request.skip != 0 || request.limit != 0)) {
        plan.chain = chainFor(*reader, request);
    }
    if (request.skip != 0 && plan.chain.isWhole && plan.chain.directories <= request.skip) {
        throw UnreadableFile("the file has " + directoriesText(plan.chain.directories) +
                             "; --skip " + std::to_string(request.skip) + " leaves none");
    }
    const auto start = reader ? firstDirectoryRead(*reader, request.skip) : std::nullopt;
    if (!start) {
        return plan;  // the module will say what is wrong
    }
    if (request.limit != 0 && !reader->isJpeg()) {
        return plan;  // any limit ends a chain of a TIFF
    }
    const ChainSurvey survey = surveyChains(*reader, *start, request.limit);
    if (survey.mayNeverEnd) {
        throw UnreadableFile(
            "a chain of directories comes back on itself over directories that yield no field; "
            "reading it might never end");
    }
    if (request.limit == 0) {
        setLimit(plan, *reader, survey);
    }
    if (request.skip == 0 && request.limit == 0) {
        plan.chain = wholeChain(*reader, survey);
    }
    return plan;
}

}  // namespace tool
