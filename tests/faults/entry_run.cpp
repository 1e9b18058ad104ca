#include "tests/faults/entry_run.h"

#include <iostream>
#include <new>

#include "tests/damage/documented_reports.h"
#include "tests/faults/value_comparison.h"

namespace test {

void PreparedCall::noteException(Outcome& outcome) {
    try {
        throw;
    } catch (const host::Error& error) {
        outcome.ending = Ending::Reported;
        outcome.error = error.report();
    } catch (const foundation::core::except::IUserException& error) {
        outcome.ending = Ending::Reported;
        outcome.error = {error.message().id(), error.message().arguments()};
    } catch (const std::bad_alloc&) {
        outcome.ending = Ending::OutOfMemory;
    } catch (const std::exception& error) {
        outcome.ending = Ending::Raised;
        outcome.raised = error.what();
    } catch (...) {
        outcome.ending = Ending::Raised;
        outcome.raised = "no std::exception";
    }
}

void expectSame(const Outcome& outcome, const Outcome& expected) {
    EXPECT_EQ(outcome.ending, expected.ending);
    EXPECT_EQ(outcome.error, expected.error);
    EXPECT_EQ(outcome.warnings, expected.warnings);
    EXPECT_TRUE(isSameValue(outcome.output.get(), expected.output.get()));
}

void expectDocumented(const Outcome& outcome) {
    if (outcome.ending == Ending::Reported) {
        EXPECT_TRUE(documentedReports().errors.contains(outcome.error.id)) << outcome.error.id;
    }
    for (const host::Report& warning : outcome.warnings) {
        EXPECT_TRUE(documentedReports().warnings.contains(warning.id)) << warning.id;
    }
}

void Tally::count(const Outcome& outcome, const Outcome& undisturbed) {
    ++calls_;
    switch (outcome.ending) {
        case Ending::Returned:
            ++(outcome.warnings == undisturbed.warnings ? unwarned_ : warned_);
            break;
        case Ending::Reported:
            ++reported_;
            break;
        case Ending::OutOfMemory:
            ++outOfMemory_;
            break;
        case Ending::Raised:
            ++raised_;
            break;
    }
}

void Tally::print(const std::string& what) const {
    const std::pair<const char*, std::size_t> counts[] = {
        {"calls", calls_},       {"unwarned", unwarned_},  {"warned", warned_},
        {"reported", reported_}, {"memory", outOfMemory_}, {"raised", raised_}};
    std::cout << "faults: " << what;
    for (const auto& [name, number] : counts) {
        std::cout << " " << name << "=" << number;
        ::testing::Test::RecordProperty(name, std::to_string(number));
    }
    std::cout << "\n";
}

}  // namespace test
