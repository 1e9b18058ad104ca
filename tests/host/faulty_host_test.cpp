#include "tests/support/faults.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

#include "host/interface/message.h"
#include "host/interface/platform.h"
#include "host/interface/text.h"
#include "host/messages/reports.h"
#include "host/values/value.h"

using namespace matrix::detail::noninlined::zx_array_api;
using host::ValuePtr;
using test::callsOf;
using test::Operation;
using test::OperationFailed;
using test::ScopedFault;

namespace {

constexpr std::array<std::size_t, 2> oneByOne = {1, 1};

/// One call of one operation, that succeeds unless it is made to fail.
struct Call {
    Operation operation;
    std::function<void()> make;
};

ValuePtr cell() {
    return ValuePtr(zxCreateCellArray(2, oneByOne.data()));
}

ValuePtr structWithFieldA() {
    const char* name = "a";
    return ValuePtr(zxCreateStructArray(2, oneByOne.data(), 1, &name));
}

void setCell() {
    const ValuePtr array = cell();
    ValuePtr value = host::makeNumber(1);
    zxSetCell(array.get(), 0, value.get());
    (void)value.release();
}

void setField() {
    const ValuePtr array = structWithFieldA();
    ValuePtr value = host::makeNumber(1);
    zxSetField(array.get(), 0, "a", value.get());
    (void)value.release();
}

void numericArray() {
    const ValuePtr array(
        zxCreateNumericArray(2, oneByOne.data(), zxClassID::Double, zxComplexity::Real));
}

void convertNamed() {
    (void)fl::i18n::codecvt_string_to_ustring("a", "UTF-8", fl::i18n::codecvt_mode::lenient,
                                              fl::i18n::KvLocale::system);
}

void toLocalTime() {
    const fl::i18n::time_zone::timezone zone("UTC");
    (void)fl::i18n::time_zone::from_utc(boost::posix_time::ptime(), zone);
}

/// Every operation but the two that fail by returning.
const std::vector<Call> raisingCalls = {
    {Operation::zxGetScalar, [] { (void)zxGetScalar(host::makeNumber(1).get()); }},
    {Operation::zxGetElements, [] { (void)zxGetElements(host::makeNumber(1).get()); }},
    {Operation::zxGetElementCount, [] { (void)zxGetElementCount(host::makeNumber(1).get()); }},
    {Operation::zxCreateDoubleScalar, [] { const ValuePtr value(zxCreateDoubleScalar(1)); }},
    {Operation::zxCreateNumericArray, numericArray},
    {Operation::zxCreateString, [] { const ValuePtr value(zxCreateString("a")); }},
    {Operation::zxCreateCharArray,
     [] { const ValuePtr value(zxCreateCharArray(2, oneByOne.data())); }},
    {Operation::zxCreateCellArray, [] { (void)cell(); }},
    {Operation::zxSetCell, setCell},
    {Operation::zxCreateStructArray, [] { (void)structWithFieldA(); }},
    {Operation::zxSetField, setField},
    {Operation::createFromUtf16, [] { (void)matrix::create(u"a", 1); }},
    {Operation::createFromNarrow, [] { (void)matrix::create("a", 1); }},
    {Operation::to_korvel, [] { const ValuePtr v(matrix::to_korvel(matrix::create("a", 1))); }},
    {Operation::isScalarText,
     [] { (void)Quillon::String::isScalarText(host::makeText(u"a").get(), false, false); }},
    {Operation::isString, [] { (void)Quillon::String::isString(host::makeText(u"a").get()); }},
    {Operation::getString,
     [] { (void)Quillon::String::getString(host::makeStringScalar(u"a").get()); }},
    {Operation::zxWarningMsgId, [] { zxWarningMsgId(resource_core::BaseMsgID("a:b")); }},
    {Operation::exists, [] { (void)fl::filesystem::exists(u"/"); }},
    {Operation::status, [] { (void)fl::filesystem::status(u"/"); }},
    {Operation::timezone, [] { const fl::i18n::time_zone::timezone zone(""); }},
    {Operation::from_utc, toLocalTime},
    {Operation::to_ustring, [] { (void)fl::i18n::to_ustring("a"); }},
    {Operation::detect_charset, [] { (void)fl::i18n::detect_charset("a", 1, ""); }},
    {Operation::codecvt_string_to_ustring, convertNamed},
};

}  // namespace

TEST(Faults, EachOperationFailsAtItsNthCallOnceAndLeavesNoValueBehind) {
    std::set<Operation> covered = {Operation::do_legacy_zx_error, Operation::fopen};
    const std::size_t before = host::livingValues();
    for (const Call& call : raisingCalls) {
        covered.insert(call.operation);
        const ScopedFault fault(call.operation, 3);
        EXPECT_NO_THROW(call.make());
        EXPECT_NO_THROW(call.make());
        try {
            call.make();
            ADD_FAILURE() << "operation " << static_cast<int>(call.operation) << " did not fail";
        } catch (const OperationFailed& failure) {
            EXPECT_EQ(failure.operation(), call.operation);
        }
        EXPECT_NO_THROW(call.make());
        EXPECT_EQ(host::livingValues(), before);
    }
    EXPECT_EQ(covered.size(), test::operationCount);
}

TEST(Faults, AFailingOpenGivesNoStream) {
    const ScopedFault fault(Operation::fopen, 1);
    EXPECT_EQ(fl::filesystem::fopen(u"/dev/null", "r"), nullptr);
    EXPECT_EQ(errno, EIO);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> next(
        fl::filesystem::fopen(u"/dev/null", "r"), &std::fclose);
    EXPECT_NE(next, nullptr);
}

TEST(Faults, EndWithTheirScope) {
    { const ScopedFault fault(Operation::to_ustring, 1); }
    EXPECT_NO_THROW((void)fl::i18n::to_ustring("a"));
}

TEST(Faults, OfDifferentOperationsStandSideBySide) {
    const ScopedFault first(Operation::to_ustring, 1);
    const ScopedFault second(Operation::exists, 2);
    EXPECT_NO_THROW((void)fl::filesystem::exists(u"/"));
    EXPECT_THROW((void)fl::i18n::to_ustring("a"), OperationFailed);
    EXPECT_THROW((void)fl::filesystem::exists(u"/"), OperationFailed);
}

TEST(Faults, TheZerothCallIsNoCall) {
    EXPECT_THROW(ScopedFault(Operation::exists, 0), std::invalid_argument);
}

TEST(Faults, BelongToTheirThread) {
    const ScopedFault fault(Operation::to_ustring, 1);
    bool failed = true;
    std::thread([&failed] {
        (void)fl::i18n::to_ustring("a");
        failed = false;
    }).join();
    EXPECT_FALSE(failed);
}

TEST(CallCounts, GrowWithEveryCallTheFailingOneIncluded) {
    const std::size_t before = callsOf(Operation::to_ustring);
    (void)fl::i18n::to_ustring("a");
    const ScopedFault fault(Operation::to_ustring, 1);
    EXPECT_THROW((void)fl::i18n::to_ustring("a"), OperationFailed);
    EXPECT_EQ(callsOf(Operation::to_ustring), before + 2);
}

TEST(CallCounts, LeaveOutWhatTheHostDoesForItself) {
    const std::size_t creations = callsOf(Operation::createFromUtf16);
    const std::size_t scalars = callsOf(Operation::zxCreateDoubleScalar);
    (void)host::makeText(u"a");
    (void)host::makeNumber(1);
    EXPECT_EQ(callsOf(Operation::createFromUtf16), creations);
    EXPECT_EQ(callsOf(Operation::zxCreateDoubleScalar), scalars);
}
