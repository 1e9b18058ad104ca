#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <ostream>
#include <set>
#include <string>

#include "tests/faults/disturbed_reading.h"
#include "tests/faults/entry_run.h"
#include "tests/faults/file_services.h"
#include "tests/faults/sample_files.h"
#include "tests/faults/value_comparison.h"
#include "tests/support/temporary_file.h"
#include "tests/support/tiff_builder.h"

// Each call of the file services, and each seek and read of the stream they open, fails in turn.

namespace test {
namespace {

/// A way to fail.
struct Disturbance {
    const char* name;
    FileOperation operation;
    FileEffect::Kind kind;
    bool lasts = false;  ///< all later calls fail as well; a short read: the stream ends there
    bool isTriedByteByByte = true;  ///< left out where another way to fail does the same
};

constexpr Disturbance disturbances[] = {
    {"exists-fails", FileOperation::Exists, FileEffect::Fails},
    {"exists-interrupted", FileOperation::Exists, FileEffect::Interrupted},
    {"status-fails", FileOperation::Status, FileEffect::Fails},
    {"status-interrupted", FileOperation::Status, FileEffect::Interrupted},
    {"status-short", FileOperation::Status, FileEffect::Short},
    {"open-fails", FileOperation::Open, FileEffect::Fails},
    {"open-fails-from-then-on", FileOperation::Open, FileEffect::Fails, true},
    {"open-interrupted", FileOperation::Open, FileEffect::Interrupted},
    {"seek-fails", FileOperation::Seek, FileEffect::Fails},
    {"seek-fails-from-then-on", FileOperation::Seek, FileEffect::Fails, true},
    {"seek-interrupted", FileOperation::Seek, FileEffect::Interrupted},
    {"tell-fails", FileOperation::Tell, FileEffect::Fails},
    {"tell-fails-from-then-on", FileOperation::Tell, FileEffect::Fails, true},
    {"tell-interrupted", FileOperation::Tell, FileEffect::Interrupted},
    {"read-fails", FileOperation::Read, FileEffect::Fails},
    {"read-fails-from-then-on", FileOperation::Read, FileEffect::Fails, true, false},
    {"read-interrupted", FileOperation::Read, FileEffect::Interrupted, false, false},
    {"read-short", FileOperation::Read, FileEffect::Short, false, false},
    {"read-ends-short", FileOperation::Read, FileEffect::Short, true, false},
};

/// Disturbs the n-th call of an operation.
class Disturber {
  public:
    Disturber(const Disturbance& disturbance, std::size_t n) : disturbance_(disturbance), n_(n) {}

    FileEffect operator()(const FileCall& call) {
        if (call.operation != disturbance_.operation) {
            return {};
        }
        ++calls_;
        if (calls_ == n_) {
            // A single byte cannot come short: without it the stream would be at its end.
            const bool isOneByte = call.size == 1 && !disturbance_.lasts;
            return {disturbance_.kind, isOneByte ? 1 : call.size - 1};
        }
        return calls_ > n_ && disturbance_.lasts ? FileEffect{disturbance_.kind, 0} : FileEffect{};
    }

    [[nodiscard]] bool isReached() const { return calls_ >= n_; }

  private:
    Disturbance disturbance_;
    std::size_t n_;
    std::size_t calls_ = 0;
};

/// Calls with each call of an operation disturbed in turn. What must come of each says expect.
template <class Expect>
void disturbEach(const PreparedCall& call, const Disturbance& disturbance, Buffering buffering,
                 const Outcome& undisturbed, Tally& tally, Expect expect) {
    const Stock stock;
    const std::size_t values = host::livingValues();
    bool isReached = true;
    for (std::size_t n = 1; isReached && !::testing::Test::HasFailure(); ++n) {
        SCOPED_TRACE(n);
        {
            Disturber disturber(disturbance, n);
            const Outcome outcome = call.run([&] {
                return ScopedFileServices(
                    buffering, [&](const FileCall& fileCall) { return disturber(fileCall); });
            });
            isReached = disturber.isReached();
            if (isReached) {
                expect(outcome);
                tally.count(outcome, undisturbed);
            } else {
                expectSame(outcome, undisturbed);
            }
        }
        EXPECT_EQ(host::livingValues(), values);
        EXPECT_EQ(ScopedFileServices::openStreams(), 0U);
    }
    stock.expectUnchanged();
}

/// Whether the host itself raises, having no way to return the failure.
bool raises(const Disturbance& disturbance) {
    return disturbance.kind == FileEffect::Interrupted &&
           (disturbance.operation == FileOperation::Exists ||
            disturbance.operation == FileOperation::Status);
}

/// The same for every way to fail, with each of these sorts of stream.
void disturbEveryWay(const PreparedCall& call, const std::string& what,
                     std::initializer_list<Buffering> bufferings) {
    const Outcome undisturbed = call.run();
    for (const Disturbance& disturbance : disturbances) {
        const bool concernsStatus = disturbance.operation == FileOperation::Status;
        const bool mustBeSame = disturbance.operation == FileOperation::Read &&
                                disturbance.kind == FileEffect::Short && !disturbance.lasts;
        Tally tally;
        const auto expect = [&](const Outcome& outcome) {
            if (raises(disturbance)) {
                EXPECT_EQ(outcome.ending, Ending::Raised);
            } else if (concernsStatus) {
                // The module believes what it is told of the file's size.
                expectDocumented(outcome);
                EXPECT_NE(outcome.ending, Ending::Raised) << outcome.raised;
            } else if (mustBeSame) {
                expectSame(outcome, undisturbed);
            } else {
                expectAccountedFor(outcome, undisturbed);
            }
        };
        SCOPED_TRACE(disturbance.name);
        for (const Buffering buffering : bufferings) {
            // To the library's own caller a read that falls short once is one that fails.
            const bool isTried = buffering == Buffering::None  ? disturbance.isTriedByteByByte
                                 : buffering == Buffering::Own ? !mustBeSame
                                                               : true;
            if (isTried) {
                disturbEach(call, disturbance, buffering, undisturbed, tally, expect);
            }
        }
        tally.print(std::string(disturbance.name) + " " + what);
    }
}

class FailingFiles : public ::testing::TestWithParam<SampleFile> {};
CORVINEX_FOR_EVERY_SAMPLE(FailingFiles);

TEST_P(FailingFiles, AreReportedOrWarnedOf) {
    disturbEveryWay(PreparedCall(GetParam().path.u16string(), GetParam().request),
                    GetParam().path.filename().string(),
                    {Buffering::None, Buffering::Small, Buffering::Full, Buffering::Own});
}

TEST_P(FailingFiles, WhileDirectoriesAreSkippedLeaveNothing) {
    Request request = GetParam().request;
    request.skip = 2;
    const PreparedCall call(GetParam().path.u16string(), request);
    const Outcome undisturbed = call.run();
    Tally tally;
    for (const Disturbance& disturbance : disturbances) {
        SCOPED_TRACE(disturbance.name);
        // What cannot be read of a directory that is skipped counts as 0 by contract.
        disturbEach(call, disturbance, Buffering::Small, undisturbed, tally,
                    [&](const Outcome& outcome) {
                        expectDocumented(outcome);
                        EXPECT_EQ(outcome.ending == Ending::Raised, raises(disturbance));
                    });
    }
    tally.print("skipping " + GetParam().path.filename().string());
}

/// Directories whose values do not lie in one block of the file with them.
Bytes manyBlocks() {
    TiffBuilder builder;
    for (const char letter : {'a', 'b', 'c'}) {
        builder.add({text(270, std::string(5000, letter)), text(305, "twenty characters...."),
                     text(306, std::string(4000, letter)), number(274, SHORT, 1)});
    }
    builder.chain({0, 1, 2});
    return builder.bytes();
}

TEST(FailingFilesOfManyBlocks, AreReportedOrWarnedOf) {
    const TemporaryFile file(manyBlocks());
    const PreparedCall call(file.path().u16string());
    std::multiset<FileOperation> calls;
    const Outcome outcome = call.run([&calls] {
        return ScopedFileServices(Buffering::Own, [&calls](const FileCall& fileCall) {
            calls.insert(fileCall.operation);
            return FileEffect{};
        });
    });
    EXPECT_EQ(directoriesOf(*outcome.output), 3U);
    EXPECT_GT(calls.count(FileOperation::Seek), 2U);
    EXPECT_GT(calls.count(FileOperation::Read), 5U);
    disturbEveryWay(call, "many blocks", {Buffering::Full, Buffering::Own});
}

}  // namespace
}  // namespace test
