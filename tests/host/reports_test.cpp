#include "host/messages/reports.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <thread>
#include <vector>

#include "tests/support/faults.h"

using host::Report;
using host::ScopedWarningSink;
using resource_core::BaseMsgID;

namespace {

const BaseMsgID pastEndOfFile("quorra:corvinex:tagDataPastEOF",
                              {std::uint64_t{273}, std::u16string(u"x")});

class TestError : public foundation::core::except::IUserException, public std::exception {
  public:
    [[nodiscard]] const BaseMsgID& message() const noexcept override { return pastEndOfFile; }
};

}  // namespace

TEST(WarningSinks, TakeIdAndArgumentsInOrder) {
    std::vector<Report> reports;
    const ScopedWarningSink sink([&reports](const Report& report) { reports.push_back(report); });
    zxWarningMsgId(pastEndOfFile);
    zxWarningMsgId(BaseMsgID("a:b"));
    EXPECT_EQ(reports, (std::vector<Report>{
                           {"quorra:corvinex:tagDataPastEOF", pastEndOfFile.arguments()},
                           {"a:b", {}},
                       }));
}

TEST(WarningSinks, GiveWayToAnInnerOneAndComeBack) {
    int outer = 0;
    int inner = 0;
    const ScopedWarningSink first([&outer](const Report&) { ++outer; });
    {
        const ScopedWarningSink second([&inner](const Report&) { ++inner; });
        zxWarningMsgId(pastEndOfFile);
    }
    zxWarningMsgId(pastEndOfFile);
    EXPECT_EQ(inner, 1);
    EXPECT_EQ(outer, 1);
}

TEST(WarningSinks, MaySetAnotherWhileTheyRun) {
    int inner = 0;
    int outer = 0;
    const ScopedWarningSink sink([&](const Report&) {
        const ScopedWarningSink other([&inner](const Report&) { ++inner; });
        zxWarningMsgId(pastEndOfFile);
        ++outer;
    });
    zxWarningMsgId(pastEndOfFile);
    EXPECT_EQ(inner, 1);
    EXPECT_EQ(outer, 1);
}

TEST(WarningSinks, WithoutOneWarningsAreDropped) {
    EXPECT_NO_THROW(zxWarningMsgId(pastEndOfFile));
    const ScopedWarningSink none(nullptr);
    EXPECT_NO_THROW(zxWarningMsgId(pastEndOfFile));
}

TEST(WarningSinks, BelongToTheirThread) {
    int count = 0;
    const ScopedWarningSink sink([&count](const Report&) { ++count; });
    std::thread([] { zxWarningMsgId(pastEndOfFile); }).join();
    EXPECT_EQ(count, 0);
}

TEST(ErrorChannel, RaisesTheReportWithTheCataloguesText) {
    try {
        matrix::detail::do_legacy_zx_error(TestError());
        FAIL() << "returned";
    } catch (const host::Error& error) {
        EXPECT_EQ(error.report(),
                  (Report{"quorra:corvinex:tagDataPastEOF", pastEndOfFile.arguments()}));
        EXPECT_STREQ(error.what(),
                     "The value of tag StripOffsets (273), x bytes, ends past the end of the file");
    }
}

TEST(ErrorChannel, ReturnsWhenItFailsOnCommand) {
    const test::ScopedFault fault(test::Operation::do_legacy_zx_error, 1);
    EXPECT_NO_THROW(matrix::detail::do_legacy_zx_error(TestError()));
}
