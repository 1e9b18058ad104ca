#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "host/messages/reports.h"
#include "tests/entry/entry_call.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

namespace {

using host::ValuePtr;
namespace api = matrix::detail::noninlined::zx_array_api;

test::Bytes onePage() {
    test::TiffBuilder builder;
    builder.add({test::text(305, "page")});
    return builder.bytes();
}

/// The report of a call with this file-name argument; nothing when it succeeds.
std::optional<host::Report> failureOf(ValuePtr name) {
    const test::Inputs inputs(std::move(name));
    zxArray* output = nullptr;
    try {
        test::callEntry(inputs, output);
    } catch (const host::Error& error) {
        return error.report();
    }
    const ValuePtr owner(output);
    return std::nullopt;
}

ValuePtr emptyCell() {
    const std::size_t dims[] = {1, 1};
    return ValuePtr(api::zxCreateCellArray(2, dims));
}

ValuePtr twoRowsOfText() {
    const std::size_t dims[] = {2, 3};
    return ValuePtr(api::zxCreateCharArray(2, dims));
}

}  // namespace

TEST(FileNameArgument, MayBeACharacterRow) {
    const test::TemporaryFile file(onePage());
    EXPECT_EQ(failureOf(host::makeText(file.name())), std::nullopt);
}

TEST(FileNameArgument, MayBeAStringScalar) {
    const test::TemporaryFile file(onePage());
    EXPECT_EQ(failureOf(host::makeStringScalar(file.name())), std::nullopt);
}

TEST(FileNameArgument, MayHoldAnyUnicodeText) {
    const test::TemporaryFile file(onePage(), "-\xC3\xA4\xE6\x97\xA5\xF0\x9F\x96\xBC.tif");
    const test::Result result = test::readFile(file.name());
    EXPECT_EQ(host::textOf(result.value("Filename")), file.name());
}

TEST(FileNameArgument, AMissingStringIsRefused) {
    const host::Report expected{"KORVEL:string:MissingNotSupported", {}};
    EXPECT_EQ(failureOf(host::makeStringScalar(std::nullopt)), expected);
}

TEST(FileNameArgument, ANumberIsAFileThatDoesNotExist) {
    EXPECT_EQ(failureOf(host::makeNumber(7)), test::report("statFailure"));
}

TEST(FileNameArgument, ValuesThatAreNoTextScalarAreAFileThatDoesNotExist) {
    EXPECT_EQ(failureOf(emptyCell()), test::report("statFailure"));
    EXPECT_EQ(failureOf(twoRowsOfText()), test::report("statFailure"));
}

TEST(FileNameArgument, AnEmptyTextIsAFileThatDoesNotExist) {
    EXPECT_EQ(failureOf(host::makeText(u"")), test::report("statFailure"));
    EXPECT_EQ(failureOf(host::makeStringScalar(u"")), test::report("statFailure"));
    const std::size_t dims[] = {1, 0};
    EXPECT_EQ(failureOf(ValuePtr(api::zxCreateCharArray(2, dims))), test::report("statFailure"));
}

TEST(FileNameArgument, IsTakenWholeWithZeroUnitsInIt) {
    const test::TemporaryFile file(onePage());
    EXPECT_EQ(failureOf(host::makeText(file.name() + u'\0')), test::report("statFailure"));
}
