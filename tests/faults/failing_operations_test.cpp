#include <gtest/gtest.h>

#include <boost/numeric/conversion/converter_policies.hpp>
#include <cstddef>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/damage/documented_reports.h"
#include "tests/faults/entry_run.h"
#include "tests/faults/report_files.h"
#include "tests/faults/sample_files.h"
#include "tests/support/faults.h"

// Each call of each operation of the host fails in turn. What the host raises reaches the caller
// unchanged, the output slot is not touched and nothing stays behind.

namespace test {
namespace {

using test::Operation;

/// Expects what must come of a call in which an operation failed.
void expectOutcome(Operation operation, const Outcome& outcome, const Outcome& undisturbed) {
    if (operation == Operation::do_legacy_zx_error) {
        // The error channel returned: the module throws the error itself.
        expectSame(outcome, undisturbed);
    } else if (operation != Operation::fopen) {
        EXPECT_EQ(outcome.ending, Ending::Raised);
        EXPECT_EQ(outcome.raised, test::OperationFailed(operation).what());
    } else if (outcome.ending == Ending::Reported && outcome.error != undisturbed.error) {
        EXPECT_EQ(outcome.error, report("unsupportedFileFormat"));
    } else {
        // A detector without its file says no, as it would have done.
        expectSame(outcome, undisturbed);
    }
}

/// Calls with each call of an operation failing in turn; how often something failed.
std::size_t failEachCallOf(Operation operation, const PreparedCall& call,
                           const Outcome& undisturbed, Tally& tally) {
    std::size_t n = 1;
    for (bool isReached = true; isReached && !::testing::Test::HasFailure();) {
        const Stock stock;
        {
            const std::size_t before = test::callsOf(operation);
            const Outcome outcome = call.run([&] { return test::ScopedFault(operation, n); });
            isReached = test::callsOf(operation) - before >= n;
            if (isReached) {
                expectOutcome(operation, outcome, undisturbed);
                tally.count(outcome, undisturbed);
                ++n;
            } else {
                expectSame(outcome, undisturbed);
            }
        }
        stock.expectUnchanged();
    }
    return n - 1;
}

/// Calls with each call of each operation failing in turn; the operations that were called at all.
std::set<Operation> failEachOperation(const PreparedCall& call, const std::string& what) {
    const Outcome undisturbed = call.run();
    Tally tally;
    std::set<Operation> failed;
    for (std::size_t i = 0; i < test::operationCount; ++i) {
        SCOPED_TRACE(i);
        const auto operation = static_cast<Operation>(i);
        if (failEachCallOf(operation, call, undisturbed, tally) != 0) {
            failed.insert(operation);
        }
    }
    expectSame(call.run(), undisturbed);
    tally.print("operations " + what);
    return failed;
}

/// Calls with a sink that raises at each warning in turn; the number of warnings.
template <class Exception>
std::size_t raiseAtEachWarning(const PreparedCall& call, const Exception& exception,
                               const Outcome& expected) {
    std::size_t n = 1;
    for (bool isReached = true; isReached && !::testing::Test::HasFailure();) {
        SCOPED_TRACE(n);
        const Stock stock;
        {
            std::size_t warnings = 0;
            const Outcome outcome = call.run([&] {
                return host::ScopedWarningSink([&warnings, &exception, n](const host::Report&) {
                    if (++warnings == n) {
                        throw exception;
                    }
                });
            });
            isReached = warnings >= n;
            if (isReached) {
                EXPECT_EQ(warnings, n);
                EXPECT_EQ(outcome.ending, expected.ending);
                EXPECT_EQ(outcome.raised, expected.raised);
                EXPECT_EQ(outcome.error, expected.error);
                ++n;
            }
        }
        stock.expectUnchanged();
    }
    return n - 1;
}

Outcome raised(const std::string& text) {
    Outcome outcome;
    outcome.ending = Ending::Raised;
    outcome.raised = text;
    return outcome;
}

Outcome reported(const host::Report& error) {
    Outcome outcome;
    outcome.ending = Ending::Reported;
    outcome.error = error;
    return outcome;
}

/// The same with exceptions of several sorts.
void raiseEverySort(const PreparedCall& call, std::size_t warnings) {
    EXPECT_EQ(raiseAtEachWarning(call, std::runtime_error("a host's own"), raised("a host's own")),
              warnings);
    EXPECT_EQ(raiseAtEachWarning(call, 42, raised("no std::exception")), warnings);
    const host::Report own{"host:own:error", {}};
    EXPECT_EQ(raiseAtEachWarning(call, host::Error(own), reported(own)), warnings);
    EXPECT_EQ(raiseAtEachWarning(call, boost::numeric::bad_numeric_cast(),
                                 reported(report("argumentOutOfBounds"))),
              warnings);
}

class FailingOperationsOnSamples : public ::testing::TestWithParam<SampleFile> {};
CORVINEX_FOR_EVERY_SAMPLE(FailingOperationsOnSamples);

TEST_P(FailingOperationsOnSamples, PassUnchangedAndLeaveNothing) {
    const PreparedCall call(GetParam().path.u16string(), GetParam().request);
    failEachOperation(call, GetParam().path.filename().string());
}

TEST_P(FailingOperationsOnSamples, IncludeWarningSinksThatRaise) {
    const PreparedCall call(GetParam().path.u16string(), GetParam().request);
    raiseEverySort(call, call.run().warnings.size());
}

TEST(FailingOperations, PassUnchangedFromFilesWithEveryWarningAndError) {
    std::set<Operation> failed;
    for (const ReportFile& file : reportFiles()) {
        SCOPED_TRACE(file.name);
        const TemporaryFile disk(file.bytes);
        failed.merge(failEachOperation(PreparedCall(disk.name(), file.request), file.name));
    }
    // A name that is no string scalar is read through other operations.
    const TemporaryFile disk(reportFiles().front().bytes);
    const PreparedCall withCharacterRow(host::makeText(disk.name()));
    failed.merge(failEachOperation(withCharacterRow, "a name in a character row"));
    EXPECT_EQ(failed.size(), test::operationCount);
}

TEST(FailingOperations, IncludeASinkThatRaisesAtEachKindOfWarning) {
    for (const ReportFile& file : warningFiles()) {
        SCOPED_TRACE(file.name);
        const TemporaryFile disk(file.bytes);
        const PreparedCall call(disk.name(), file.request);
        const std::size_t warnings = call.run().warnings.size();
        EXPECT_GT(warnings, 10U);
        raiseEverySort(call, warnings);
    }
}

// What the tests above rest on.

TEST(WarningFiles, RaiseEveryWarningThatNeedsNoFailingService) {
    std::set<std::string> expected = documentedReports().warnings;
    for (const char* const name :
         {"badNextIfdPointerSeek", "badSubIfdSeek", "unableToReadTiffTag"}) {
        EXPECT_EQ(expected.erase(report(name).id), 1U);
    }
    std::set<std::string> issued;
    for (const ReportFile& file : warningFiles()) {
        const Result result = read(file.bytes, file.request);
        EXPECT_FALSE(result.failed()) << file.name;
        for (const host::Report& warning : result.warnings()) {
            issued.insert(warning.id);
        }
    }
    EXPECT_EQ(issued, expected);
}

TEST(ErrorFiles, EndInTheErrorTheyAreNamedAfter) {
    for (const ReportFile& file : errorFiles()) {
        EXPECT_EQ(read(file.bytes, file.request).error().id, report(file.name).id);
    }
}

}  // namespace
}  // namespace test
