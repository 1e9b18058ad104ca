#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>

#include "tests/faults/disturbed_reading.h"
#include "tests/faults/entry_run.h"
#include "tests/faults/file_services.h"
#include "tests/faults/sample_files.h"

// A file that changes while it is read: at each moment between two calls of the file services it
// becomes shorter or longer, or something else stands in its place.

namespace test {
namespace {

namespace fs = std::filesystem;

/// A copy of a sample, under one name and with one time whatever becomes of it.
class ChangingFile {
  public:
    explicit ChangingFile(const fs::path& sample)
        : sample_(sample), place_({}, sample.extension().string()), path_(place_.path()) {}
    ~ChangingFile() { remove(); }
    ChangingFile(const ChangingFile&) = delete;
    ChangingFile& operator=(const ChangingFile&) = delete;

    [[nodiscard]] std::u16string name() const { return path_.u16string(); }
    [[nodiscard]] std::uintmax_t fullSize() const { return fs::file_size(sample_); }

    void putBack() const { replaceBy(sample_); }
    void remove() const { fs::remove_all(path_); }
    void resizeTo(std::uintmax_t size) const {
        if (fs::is_regular_file(path_)) {
            fs::resize_file(path_, size);
            restoreTime();
        }
    }
    /// Another file takes the place; a stream on the one before keeps that.
    void replaceBy(const fs::path& other) const {
        remove();
        fs::copy_file(other, path_);
        restoreTime();
    }
    void replaceByDirectory() const {
        remove();
        fs::create_directory(path_);
    }

  private:
    void restoreTime() const { fs::last_write_time(path_, fs::last_write_time(sample_)); }

    fs::path sample_;
    TemporaryFile place_;
    fs::path path_;
};

/// Makes a change just before the n-th moment of a call.
class Moment {
  public:
    using Change = std::function<void()>;

    Moment(std::size_t n, bool countsReads, Change change)
        : n_(n), countsReads_(countsReads), change_(std::move(change)) {}

    FileEffect operator()(const FileCall& call) {
        const bool isOfStream =
            call.operation == FileOperation::Seek || call.operation == FileOperation::Tell;
        const bool counts = !isOfStream && (countsReads_ || call.operation != FileOperation::Read);
        if (counts && ++moments_ == n_) {
            isAfterStatus_ = statusIsTaken_;
            change_();
        }
        statusIsTaken_ = statusIsTaken_ || call.operation == FileOperation::Status;
        return {};
    }

    [[nodiscard]] bool isReached() const { return moments_ >= n_; }
    /// Whether the module knew the file's size when the change came.
    [[nodiscard]] bool isAfterStatus() const { return isAfterStatus_; }

  private:
    std::size_t n_;
    bool countsReads_;
    Change change_;
    std::size_t moments_ = 0;
    bool statusIsTaken_ = false;
    bool isAfterStatus_ = false;
};

class ChangingFiles : public ::testing::TestWithParam<SampleFile> {
  protected:
    /// Calls with the change at each moment in turn. What must come of a call is for expect to say;
    /// it is told whether the change came after the status was taken.
    template <class Expect>
    void changeAtEachMoment(bool countsReads, const Moment::Change& change, Expect expect,
                            const std::string& what) {
        file.putBack();
        undisturbed = call.run();
        Tally tally;
        bool isReached = true;
        for (std::size_t n = 1; isReached && !HasFailure(); ++n) {
            SCOPED_TRACE(what + " " + std::to_string(n));
            file.putBack();
            const Stock stock;
            {
                Moment moment(n, countsReads, change);
                const Outcome outcome = call.run([&] {
                    return ScopedFileServices(Buffering::Small, [&](const FileCall& fileCall) {
                        return moment(fileCall);
                    });
                });
                isReached = moment.isReached();
                if (isReached) {
                    expectDocumented(outcome);
                    EXPECT_NE(outcome.ending, Ending::Raised) << outcome.raised;
                    expect(outcome, moment.isAfterStatus());
                    tally.count(outcome, undisturbed);
                }
            }
            EXPECT_EQ(ScopedFileServices::openStreams(), 0U);
            stock.expectUnchanged();
        }
        EXPECT_GT(tally.calls(), 0U);
        tally.print(what + " " + GetParam().path.filename().string());
    }

    ChangingFile file{GetParam().path};
    PreparedCall call{file.name(), GetParam().request};
    Outcome undisturbed;
};
CORVINEX_FOR_EVERY_SAMPLE(ChangingFiles);

TEST_P(ChangingFiles, ThatShrinkAreReportedOrWarnedOf) {
    const auto expect = [this](const Outcome& outcome, bool isAfterStatus) {
        if (isAfterStatus) {
            expectAccountedFor(outcome, undisturbed);
        }
    };
    const std::uintmax_t size = file.fullSize();
    for (const std::uintmax_t rest : {size - 1, size / 2, std::uintmax_t{4}, std::uintmax_t{0}}) {
        changeAtEachMoment(
            true, [&] { file.resizeTo(rest); }, expect, "shrinks");
    }
}

TEST_P(ChangingFiles, ThatGrowAreReadAsTheyWere) {
    const std::uintmax_t size = file.fullSize();
    changeAtEachMoment(
        true, [&] { file.resizeTo(size + 5000); },
        [this](const Outcome& outcome, bool isAfterStatus) {
            if (isAfterStatus) {
                expectSame(outcome, undisturbed);
            }
        },
        "grows");
}

TEST_P(ChangingFiles, ThatAreReplacedByTheSameAreReadAsTheyWere) {
    changeAtEachMoment(
        true, [&] { file.replaceBy(GetParam().path); },
        [this](const Outcome& outcome, bool) { expectSame(outcome, undisturbed); }, "renewed");
}

TEST_P(ChangingFiles, ThatAreReplacedByAnotherLeaveNothing) {
    const auto anything = [](const Outcome&, bool) {};
    for (const SampleFile& other : sampleFiles()) {
        changeAtEachMoment(
            false, [&] { file.replaceBy(other.path); }, anything, "replaced");
    }
}

TEST_P(ChangingFiles, ThatGoAwayAreReportedUntilTheyAreOpen) {
    const auto expect = [](const Outcome& outcome, bool) {
        EXPECT_EQ(outcome.ending, Ending::Reported);
        EXPECT_TRUE(outcome.warnings.empty());
    };
    changeAtEachMoment(
        false, [&] { file.remove(); }, expect, "removed");
    changeAtEachMoment(
        false, [&] { file.replaceByDirectory(); }, expect, "directory");
}

TEST_P(ChangingFiles, ThatAppearAreReadOrReported) {
    file.remove();
    for (std::size_t n = 1; n <= 2; ++n) {
        file.remove();
        const Stock stock;
        {
            Moment moment(n, false, [&] { file.putBack(); });
            const Outcome outcome = call.run([&] {
                return ScopedFileServices(
                    Buffering::Small, [&](const FileCall& fileCall) { return moment(fileCall); });
            });
            EXPECT_TRUE(moment.isReached());
            expectDocumented(outcome);
            EXPECT_NE(outcome.ending, Ending::Raised) << outcome.raised;
        }
        stock.expectUnchanged();
    }
}

}  // namespace
}  // namespace test
