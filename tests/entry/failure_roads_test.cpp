#include <gtest/gtest.h>

#include <boost/numeric/conversion/converter_policies.hpp>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/messages/reports.h"
#include "host/values/value.h"
#include "tests/entry/entry_call.h"
#include "tests/support/faults.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

// Every road out of the entry: what reaches the host, and that nothing stays behind.

namespace {

using host::ValuePtr;
using test::Operation;
using test::report;

/// A structure that makes the module use every operation of the host.
test::Bytes richTiff(test::Order order, test::Layout layout) {
    test::TiffBuilder builder(order, layout);
    builder.add({test::shorts(256, {4}), test::shorts(257, {3}), test::shorts(258, {8, 8, 8}),
                 test::shorts(262, {2}), test::text(270, "a description"),
                 test::at(305, test::ASCII, 0, 0), test::text(315, ""),
                 test::rationals(282, test::RATIONAL, {{1, 0}}),
                 test::pointers(330, test::LONG, {2, 3}), test::shorts(339, {1, 2, 3}),
                 test::pointers(34665, test::LONG, {4}), test::pointers(34853, test::LONG, {5}),
                 test::numbers(37724, test::UNDEFINED, {1, 2, 3, 4, 5, 6, 7, 8, 9}),
                 test::text(60000, "unknown text"), test::shorts(60001, {7}),
                 test::text(60003, "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E and more")});
    builder.add({test::text(270, "a second page"), test::shorts(320, test::Numbers(6, 65535))});
    builder.add({test::text(270, "a sub-directory")});
    builder.add({test::shorts(256, {1}), test::shorts(257, {1})});
    builder.add({test::numbers(36864, test::UNDEFINED, {'0', '2', '3', '0'}),
                 test::text(60002, "unknown in EXIF"), test::pointers(40965, test::LONG, {6})});
    builder.add({test::numbers(0, test::BYTE, {2, 3, 0, 0}), test::text(1, "N")});
    builder.add({test::text(1, "R98")});
    return builder.chain({0, 1}).bytes();
}

struct Sample {
    std::string name;
    test::Bytes bytes;
    double headerOffset = 0;
};

std::vector<Sample> samples() {
    const test::JpegWithExif jpeg =
        test::jpegWithExif(richTiff(test::Order::Big, test::Layout::Classic));
    return {
        {"classic", richTiff(test::Order::Little, test::Layout::Classic)},
        {"big", richTiff(test::Order::Big, test::Layout::Big)},
        {"jpeg", jpeg.bytes, static_cast<double>(jpeg.headerPosition)},
    };
}

/// Takes stock, and says later whether values or files stayed behind.
class Inventory {
  public:
    void expectUnchanged() const {
        EXPECT_EQ(host::livingValues(), values_);
        EXPECT_EQ(test::openFiles(), files_);
    }

  private:
    std::size_t values_ = host::livingValues();
    std::size_t files_ = test::openFiles();
};

/// Calls the entry on a file and frees the output. Expects that a call that raises leaves the
/// output slot alone; passes on what it raises.
void callAndFree(const test::Inputs& inputs) {
    const ValuePtr marker = host::makeNumber(0);
    zxArray* output = marker.get();
    try {
        test::callEntry(inputs, output);
    } catch (...) {
        EXPECT_EQ(output, marker.get());
        throw;
    }
    EXPECT_NE(output, marker.get());
    const ValuePtr owner(output);
}

/// Calls with a sink that raises at the first warning.
template <class Exception>
void callWithRaisingSink(const Exception& exception) {
    const test::TemporaryFile file(richTiff(test::Order::Little, test::Layout::Classic));
    const host::ScopedWarningSink sink([&exception](const host::Report&) { throw exception; });
    callAndFree(test::Inputs(file.name()));
}

struct BadFile {
    std::string identifier;
    test::Bytes bytes;
};

std::vector<BadFile> badFiles() {
    test::TiffBuilder badCount;
    badCount.add({test::shorts(277, {1, 1})});
    return {
        {"unsupportedFileFormat", {'G', 'I', 'F', '8'}},
        {"tiffHeaderReadFailure", {'I', 'I', 42, 0}},
        {"badTiffIfdOffset", {'I', 'I', 42, 0, 9, 0, 0, 0}},
        {"badEndianness", {0xFF, 0xD8}},
        {"badIFDread", {'I', 'I', 42, 0, 8, 0, 0, 0, 1, 0}},
        {"badTagDataCount", badCount.bytes()},
    };
}

}  // namespace

TEST(FailingOperations, AnOpenThatFailsIsAnUnsupportedFormat) {
    // One open for each detector that is asked, and one to read.
    const struct {
        std::size_t sample;
        std::size_t mainOpen;
    } expected[] = {{0, 3}, {1, 4}, {2, 2}};
    for (const auto& [index, mainOpen] : expected) {
        const Sample sample = samples()[index];
        SCOPED_TRACE(sample.name);
        const test::TemporaryFile file(sample.bytes);
        const test::Inputs inputs(file.name(), {sample.headerOffset, 0, 0});
        const Inventory inventory;
        const test::ScopedFault fault(Operation::fopen, mainOpen);
        try {
            callAndFree(inputs);
            ADD_FAILURE() << "no error";
        } catch (const host::Error& error) {
            EXPECT_EQ(error.report(), report("unsupportedFileFormat"));
        }
        inventory.expectUnchanged();
    }
}

TEST(FailingOperations, ADetectorThatCannotOpenTheFileSaysNo) {
    // The detectors in front of the right one would have said no anyway.
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        const test::TemporaryFile file(sample.bytes);
        const std::size_t right = sample.name == "jpeg" ? 1 : sample.name == "classic" ? 2 : 3;
        for (std::size_t n = 1; n <= right; ++n) {
            const test::ScopedFault fault(Operation::fopen, n);
            const test::Result result = test::readFile(file.name(), {sample.headerOffset, 0, 0});
            if (n < right) {
                EXPECT_FALSE(result.failed());
            } else {
                EXPECT_EQ(result.error(), report("unsupportedFileFormat"));
            }
        }
    }
}

TEST(ErrorChannel, GetsEveryFatalErrorOnceAndNothingStaysBehind) {
    for (const BadFile& bad : badFiles()) {
        SCOPED_TRACE(bad.identifier);
        const test::TemporaryFile file(bad.bytes);
        const test::Inputs inputs(file.name());
        const Inventory inventory;
        const std::size_t before = test::callsOf(Operation::do_legacy_zx_error);
        try {
            callAndFree(inputs);
            ADD_FAILURE() << "no error";
        } catch (const host::Error& error) {
            EXPECT_EQ(error.report().id, "quorra:corvinex:" + bad.identifier);
        }
        EXPECT_EQ(test::callsOf(Operation::do_legacy_zx_error) - before, 1U);
        inventory.expectUnchanged();
    }
}

TEST(ErrorChannel, ThatReturnsLeavesTheModuleToThrowTheErrorItself) {
    for (const BadFile& bad : badFiles()) {
        SCOPED_TRACE(bad.identifier);
        const test::TemporaryFile file(bad.bytes);
        const test::Inputs inputs(file.name());
        host::Report expected;
        try {
            callAndFree(inputs);
        } catch (const host::Error& error) {
            expected = error.report();
        }
        const Inventory inventory;
        const test::ScopedFault returns(Operation::do_legacy_zx_error, 1);
        try {
            callAndFree(inputs);
            ADD_FAILURE() << "no error";
        } catch (const foundation::core::except::IUserException& error) {
            EXPECT_EQ(error.message().id(), expected.id);
            EXPECT_EQ(error.message().arguments(), expected.arguments);
        }
        inventory.expectUnchanged();
    }
}

TEST(ErrorChannel, ThatReturnsForAMissingFileOrNameLeavesTheModuleToThrowToo) {
    struct {
        ValuePtr name;
        std::string id;
    } cases[] = {{host::makeText(u"/no/such/file"), "quorra:corvinex:statFailure"},
                 {host::makeStringScalar(std::nullopt), "KORVEL:string:MissingNotSupported"}};
    for (auto& [name, id] : cases) {
        const test::Inputs inputs(std::move(name));
        const Inventory inventory;
        const test::ScopedFault returns(Operation::do_legacy_zx_error, 1);
        try {
            callAndFree(inputs);
            ADD_FAILURE() << "no error";
        } catch (const foundation::core::except::IUserException& error) {
            EXPECT_EQ(error.message().id(), id);
        }
        inventory.expectUnchanged();
    }
}

TEST(NumericRangeFailure, BecomesArgumentOutOfBounds) {
    const Inventory inventory;
    try {
        callWithRaisingSink(boost::numeric::bad_numeric_cast());
        ADD_FAILURE() << "no error";
    } catch (const host::Error& error) {
        EXPECT_EQ(error.report(), report("argumentOutOfBounds"));
    }
    inventory.expectUnchanged();
}

TEST(NumericRangeFailure, OfEverySortBecomesArgumentOutOfBounds) {
    EXPECT_THROW(callWithRaisingSink(boost::numeric::negative_overflow()), host::Error);
    EXPECT_THROW(callWithRaisingSink(boost::numeric::positive_overflow()), host::Error);
}

TEST(NumericRangeFailure, IsReportedAfterTheFileIsClosed) {
    const test::TemporaryFile file(richTiff(test::Order::Little, test::Layout::Classic));
    const test::Inputs inputs(file.name());
    const Inventory inventory;
    const host::ScopedWarningSink sink(
        [](const host::Report&) { throw boost::numeric::bad_numeric_cast(); });
    // The channel returns, so the error object itself arrives and nothing is left to unwind.
    const test::ScopedFault returns(Operation::do_legacy_zx_error, 1);
    try {
        callAndFree(inputs);
        ADD_FAILURE() << "no error";
    } catch (const foundation::core::except::IUserException& error) {
        EXPECT_EQ(error.message().id(), "quorra:corvinex:argumentOutOfBounds");
    }
    inventory.expectUnchanged();
}

TEST(OtherExceptions, PassUnchanged) {
    const Inventory inventory;
    EXPECT_THROW(callWithRaisingSink(std::bad_cast()), std::bad_cast);
    EXPECT_THROW(callWithRaisingSink(std::bad_alloc()), std::bad_alloc);
    EXPECT_THROW(callWithRaisingSink(std::runtime_error("a host's own")), std::runtime_error);
    EXPECT_THROW(callWithRaisingSink(42), int);
    EXPECT_THROW(callWithRaisingSink(host::Error({"host:own:error", {}})), host::Error);
    inventory.expectUnchanged();
}
