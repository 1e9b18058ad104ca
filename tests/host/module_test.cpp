#include "host/loading/module.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/faults.h"

using host::CallResult;
using host::Report;
using test::Operation;

namespace {

/// Calls a module that does what the file name says. Fails a test after which values are left over.
class ModuleCalls : public testing::Test {
  protected:
    ~ModuleCalls() override { EXPECT_EQ(host::livingValues(), before_); }

    [[nodiscard]] CallResult call(std::u16string_view what) const {
        return module_.call(what, 1, 2, 3);
    }
    [[nodiscard]] std::string messageOfNoReport(std::u16string_view what) const {
        const CallResult result = call(what);
        EXPECT_EQ(result.output, nullptr);
        if (!result.failure || result.failure->report) {
            return "not a failure without a report";
        }
        return result.failure->message;
    }

    host::Module module_{CORVINEX_MODULE_DOUBLE};

  private:
    std::size_t before_ = host::livingValues();
};

Report seekWarning(std::uint64_t number) {
    return {"quorra:corvinex:badSubIfdSeek", {number}};
}

const Report raisedReport{"quorra:corvinex:badTiffIfdOffset", {std::uint64_t{9}, std::uint64_t{8}}};

constexpr const char* raisedText =
    "The first directory, at position 9, lies past the end of the file, which has 8 bytes";

}  // namespace

TEST_F(ModuleCalls, HandTheNumbersOverAsTheyAreAndGiveTheOutput) {
    const double infinity = std::numeric_limits<double>::infinity();
    const CallResult result = module_.call(u"x", -1, std::nan(""), infinity);
    ASSERT_NE(result.output, nullptr);
    EXPECT_FALSE(result.failure);
    const auto numbers = host::doublesOf(*result.output);
    EXPECT_EQ(numbers[0], -1);
    EXPECT_TRUE(std::isnan(numbers[1]));
    EXPECT_EQ(numbers[2], infinity);
}

TEST_F(ModuleCalls, TakeAnEmptyFileName) {
    EXPECT_NE(call(u"").output, nullptr);
}

TEST_F(ModuleCalls, CollectWarningsInOrder) {
    EXPECT_EQ(call(u"warn").warnings, (std::vector<Report>{seekWarning(1), seekWarning(2)}));
}

TEST_F(ModuleCalls, HandWarningsToASinkInstead) {
    std::vector<Report> reports;
    const CallResult result = module_.call(
        u"warn", 0, 0, 0, [&reports](const Report& report) { reports.push_back(report); });
    EXPECT_EQ(reports, (std::vector<Report>{seekWarning(1), seekWarning(2)}));
    EXPECT_TRUE(result.warnings.empty());
    EXPECT_NE(result.output, nullptr);
}

TEST_F(ModuleCalls, ATroubledSinkFailsTheCall) {
    const CallResult result = module_.call(
        u"warn", 0, 0, 0, [](const Report&) { throw std::runtime_error("the sink is full"); });
    ASSERT_TRUE(result.failure);
    EXPECT_EQ(result.failure->message, "the sink is full");
}

TEST_F(ModuleCalls, AnErrorWithAMessageIdIsAReportAndItsText) {
    const CallResult result = call(u"raise");
    EXPECT_EQ(result.output, nullptr);
    ASSERT_TRUE(result.failure);
    EXPECT_EQ(result.failure->report, raisedReport);
    EXPECT_EQ(result.failure->message, raisedText);
    EXPECT_EQ(result.warnings, std::vector<Report>{seekWarning(1)});
}

TEST_F(ModuleCalls, SoIsOneThatTheModuleThrowsItself) {
    const test::ScopedFault fault(Operation::do_legacy_zx_error, 1);
    const CallResult result = call(u"raise");
    ASSERT_TRUE(result.failure);
    EXPECT_EQ(result.failure->report, raisedReport);
    EXPECT_EQ(result.failure->message, raisedText);
}

TEST_F(ModuleCalls, ErrorsWithoutAMessageIdAreTexts) {
    EXPECT_EQ(messageOfNoReport(u"out of memory"), "out of memory");
    EXPECT_TRUE(call(u"out of memory").failure->isOutOfMemory);
    EXPECT_FALSE(call(u"standard error").failure->isOutOfMemory);
    EXPECT_EQ(messageOfNoReport(u"standard error"), "the reason");
    EXPECT_EQ(messageOfNoReport(u"anything"), "unknown error");
    EXPECT_EQ(messageOfNoReport(u"no output"), "the module returned without an output");
}

TEST_F(ModuleCalls, AnOutputBesideAnErrorIsDestroyed) {
    const CallResult result = call(u"output, then an error");
    EXPECT_EQ(result.output, nullptr);
    EXPECT_EQ(result.failure->report, raisedReport);
}

TEST_F(ModuleCalls, AFailingOperationOfTheHostIsAText) {
    const test::ScopedFault fault(Operation::zxGetScalar, 2);
    EXPECT_EQ(messageOfNoReport(u"x"), "zxGetScalar failed on command");
}

TEST_F(ModuleCalls, TheModuleTellsItsInterfaceVersion) {
    EXPECT_EQ(module_.apiVersion(), 0x08000000U);
}

TEST(ModuleLoading, RaisesForALibraryThatIsNotThere) {
    EXPECT_THROW(host::Module("/nowhere/module.so"), std::runtime_error);
}

TEST(ModuleLoading, RaisesForALibraryWithoutTheEntryPoints) {
    Dl_info info{};
    ASSERT_NE(::dladdr(reinterpret_cast<const void*>(&host::livingValues), &info), 0);
    EXPECT_THROW(host::Module(info.dli_fname), std::runtime_error);
}
