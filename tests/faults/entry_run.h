#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/messages/reports.h"
#include "host/values/value.h"
#include "tests/entry/entry_call.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

// Calls of the module's entry with something failing, and what must hold after each.

namespace test {

enum class Ending {
    Returned,
    Reported,     ///< an error with a message ID
    OutOfMemory,  ///< a failed allocation
    Raised,       ///< anything else that the host raised
};

/// What one call of the entry gave.
struct Outcome {
    Ending ending = Ending::Returned;
    host::ValuePtr output;
    std::vector<host::Report> warnings;
    host::Report error;  ///< when Reported
    std::string raised;  ///< when Raised: its text
};

/// A call with its arguments made, so that nothing but the entry runs while something fails.
class PreparedCall {
  public:
    explicit PreparedCall(const std::u16string& name, const Request& request = {})
        : PreparedCall(host::makeStringScalar(name), request) {}
    /// With a file name of whatever class.
    explicit PreparedCall(host::ValuePtr name, const Request& request = {})
        : inputs_(std::move(name), request) {}

    /// Calls while what makeFault makes lives. Expects that the output slot is written when the
    /// call returns, and not touched when it raises.
    template <class MakeFault>
    [[nodiscard]] Outcome run(MakeFault makeFault) const {
        Outcome outcome;
        const host::ScopedWarningSink sink(
            [&outcome](const host::Report& warning) { outcome.warnings.push_back(warning); });
        const host::ValuePtr marker = host::makeNumber(0);
        zxArray* outputs[] = {marker.get()};
        std::vector<const zxArray*> list = inputs_.list();
        auto* const entry = exportedFunction<decltype(zekFunction)>("zekFunction");
        try {
            [[maybe_unused]] const auto fault = makeFault();
            entry(1, outputs, 4, list.data());
        } catch (...) {
            noteException(outcome);
        }
        const bool isWritten = outputs[0] != marker.get();
        EXPECT_EQ(isWritten, outcome.ending == Ending::Returned);
        if (isWritten) {
            outcome.output.reset(outputs[0]);
        }
        return outcome;
    }

    /// Calls with nothing failing.
    [[nodiscard]] Outcome run() const {
        return run([] { return 0; });
    }

  private:
    /// What the exception being handled says.
    static void noteException(Outcome& outcome);

    Inputs inputs_;
};

/// Takes stock, and says later whether values or files stayed behind.
class Stock {
  public:
    void expectUnchanged() const {
        EXPECT_EQ(host::livingValues(), values_);
        EXPECT_EQ(openFiles(), files_);
    }

  private:
    std::size_t values_ = host::livingValues();
    std::size_t files_ = openFiles();
};

/// Expects the output and the warnings of another call.
void expectSame(const Outcome& outcome, const Outcome& expected);

/// Expects that every report of a call is a documented one. What the host raised is not judged.
void expectDocumented(const Outcome& outcome);

/// Counts how calls ended, and prints it.
class Tally {
  public:
    void count(const Outcome& outcome, const Outcome& undisturbed);
    [[nodiscard]] std::size_t calls() const { return calls_; }
    /// One line for the log, and a property of the running test.
    void print(const std::string& what) const;

  private:
    std::size_t calls_ = 0;
    std::size_t unwarned_ = 0;  // returned, with the warnings of the undisturbed call
    std::size_t warned_ = 0;    // returned, with others
    std::size_t reported_ = 0;
    std::size_t outOfMemory_ = 0;
    std::size_t raised_ = 0;
};

}  // namespace test
