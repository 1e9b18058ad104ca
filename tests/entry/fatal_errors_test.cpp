#include "entry/reports/fatal_errors.h"

#include <gtest/gtest.h>

#include <exception>
#include <limits>
#include <string>
#include <vector>

#include "host/messages/reports.h"
#include "tests/support/faults.h"
#include "tests/support/module_call.h"

namespace {

using namespace std::string_literals;
namespace error = quorra::corvinex;
using Arguments = std::vector<resource_core::BaseMsgID::Argument>;

constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();

/// What an error holds, and what raising it does.
template <class Error>
void expectError(const Error& raised, const std::string& id, const Arguments& arguments) {
    const foundation::core::except::IUserException& asHostSees = raised;
    const std::exception& asStandardSees = raised;
    EXPECT_EQ(asHostSees.message().id(), id);
    EXPECT_EQ(asHostSees.message().arguments(), arguments);
    EXPECT_EQ(asStandardSees.what(), id);
    // The host's channel gets the same message ...
    EXPECT_THROW(
        try { corvinex::raiseFatal(raised); } catch (const host::Error& reported) {
            EXPECT_EQ(reported.report(), (host::Report{id, arguments}));
            throw;
        },
        host::Error);
    // ... and should it return, the error itself is thrown.
    const test::ScopedFault returns(test::Operation::do_legacy_zx_error, 1);
    EXPECT_THROW(
        try { corvinex::raiseFatal(raised); } catch (const Error& thrown) {
            EXPECT_EQ(thrown.message().id(), id);
            EXPECT_EQ(thrown.message().arguments(), arguments);
            throw;
        },
        Error);
}

}  // namespace

TEST(FatalErrors, WithoutArguments) {
    expectError(error::unsupportedFileFormat(), "quorra:corvinex:unsupportedFileFormat", {});
    expectError(error::statFailure(), "quorra:corvinex:statFailure", {});
    expectError(error::tiffHeaderReadFailure(), "quorra:corvinex:tiffHeaderReadFailure", {});
    expectError(error::badTiffHeaderIfdOffset(), "quorra:corvinex:badTiffHeaderIfdOffset", {});
    expectError(error::unableToReadTagData(), "quorra:corvinex:unableToReadTagData", {});
    expectError(error::strftimeFailure(), "quorra:corvinex:strftimeFailure", {});
    expectError(error::argumentOutOfBounds(), "quorra:corvinex:argumentOutOfBounds", {});
}

TEST(FatalErrors, OfTheHostsTextLayer) {
    expectError(KORVEL::string::MustBeStringScalarOrCharacterVector(),
                "KORVEL:string:MustBeStringScalarOrCharacterVector", {});
    expectError(KORVEL::string::MissingNotSupported(), "KORVEL:string:MissingNotSupported", {});
}

TEST(FatalErrors, BadEndiannessHoldsBothBytesAndTheFileName) {
    expectError(error::badEndianness(255, 216, u"a.jpg"s), "quorra:corvinex:badEndianness",
                {255U, 216U, u"a.jpg"s});
}

TEST(FatalErrors, BadTiffIfdOffsetHoldsThePositionAndTheFileSize) {
    expectError(error::badTiffIfdOffset(greatest, 8), "quorra:corvinex:badTiffIfdOffset",
                {greatest, 8U});
}

TEST(FatalErrors, BadIFDreadHoldsTheDirectory) {
    expectError(error::badIFDread(u"IFD #1"s), "quorra:corvinex:badIFDread", {u"IFD #1"s});
}

TEST(FatalErrors, BadTagDataCountHoldsTheTagItsNameAndBothCounts) {
    expectError(error::badTagDataCount(256, "Width", greatest, 1),
                "quorra:corvinex:badTagDataCount", {256U, u"Width"s, greatest, 1U});
}

TEST(FatalErrors, UnrecognizedTagFormatIdHoldsTheTypeCode) {
    expectError(error::unrecognizedTagFormatId(65535), "quorra:corvinex:unrecognizedTagFormatId",
                {65535U});
}

TEST(FatalErrors, UnrecognizedIfdIdHoldsTheKind) {
    expectError(error::unrecognizedIfdId(4294967295U), "quorra:corvinex:unrecognizedIfdId",
                {4294967295U});
}
