#include "tests/faults/disturbed_reading.h"

#include <algorithm>
#include <set>

#include "tests/faults/value_comparison.h"

namespace test {

namespace {

/// The warnings that tell of a failed seek or read.
const std::set<std::string>& fileWarnings() {
    static const std::set<std::string> ids = [] {
        std::set<std::string> set;
        for (const char* const name : {"numberOfDirectoryEntriesReadError", "badNextIfdPointerSeek",
                                       "nextIfdOffsetReadError", "badTagDataOffsetSeek",
                                       "unableToReadTiffTag", "badSubIfdSeek"}) {
            set.insert(report(name).id);
        }
        return set;
    }();
    return ids;
}

/// The warnings that the undisturbed call does not issue.
std::vector<host::Report> addedWarnings(const Outcome& outcome, const Outcome& undisturbed) {
    std::vector<host::Report> known = undisturbed.warnings;
    std::vector<host::Report> added;
    for (const host::Report& warning : outcome.warnings) {
        const auto place = std::ranges::find(known, warning);
        if (place == known.end()) {
            added.push_back(warning);
        } else {
            known.erase(place);
        }
    }
    return added;
}

}  // namespace

void expectAccountedFor(const Outcome& outcome, const Outcome& undisturbed) {
    expectDocumented(outcome);
    const std::vector<host::Report> added = addedWarnings(outcome, undisturbed);
    for (const host::Report& warning : added) {
        EXPECT_TRUE(fileWarnings().contains(warning.id)) << ::testing::PrintToString(warning);
    }
    if (outcome.ending != Ending::Returned) {
        EXPECT_EQ(outcome.ending, Ending::Reported) << outcome.raised;
        return;
    }
    if (added.empty()) {
        expectSame(outcome, undisturbed);
        return;
    }
    const std::size_t directories = directoriesOf(*outcome.output);
    ASSERT_LE(directories, directoriesOf(*undisturbed.output));
    std::size_t changed = 0;
    for (std::size_t i = 0; i < directories; ++i) {
        changed += isSameDirectory(*outcome.output, *undisturbed.output, i) ? 0 : 1;
    }
    EXPECT_LE(changed, 1U);
}

}  // namespace test
