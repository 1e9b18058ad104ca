#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <iterator>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/corpus/bounded_process.h"
#include "tests/support/module_call.h"

// The kit for host authors, on hosts that are right and on hosts that are wrong on purpose.

namespace {

using namespace std::string_literals;
using test::ProcessResult;

constexpr std::chrono::seconds limit{240};

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> withModule(std::string program) {
    return {std::move(program), "--module", test::modulePath().string()};
}

/// The lines of failed checks, all but the closing one, without what was raised.
std::vector<std::string> failedChecks(const ProcessResult& result) {
    std::vector<std::string> lines = linesOf(result.out);
    if (!lines.empty()) {
        lines.pop_back();
    }
    for (std::string& line : lines) {
        const std::size_t detail = line.find(". (");
        line.erase(detail == std::string::npos ? line.size() : detail + 1);
    }
    return lines;
}

struct Fault {
    const char* name;
    const char* sentence;                  ///< of the check that the fault breaks
    std::vector<std::string> others = {};  ///< those that it cannot leave whole
};

void PrintTo(const Fault& fault, std::ostream* stream) {
    *stream << fault.name;
}

const std::vector<Fault> faults = {
    {"a failing cell store takes the value",
     "zxSetCell: A store beyond the last cell must raise and leave the value with its caller."},
    {"a failing field store takes the value",
     "zxSetField: A store in a field or an element that is not there must raise and leave the "
     "value with its caller."},
    {"a failing field store returns",
     "zxSetField: A store in a field or an element that is not there must raise and leave the "
     "value with its caller."},
    {"a field is set once", "zxSetField: What the field held must be destroyed and replaced."},
    {"null is not stored", "zxSetField: Null must leave the field unset and destroy what it held."},
    {"fields start as numbers",
     "zxCreateStructArray: All fields of a new struct array must be unset.",
     {"zxSetField: A value must be found in the element and the field that it was stored in.",
      "zxSetField: Field names must be told apart whole and by case.",
      "zxSetField: Null must leave the field unset and destroy what it held.",
      "zxSetField: Each of many elements must have fields of its own.",
      "destroyArray: What a cell or struct array holds must be destroyed with it, however deep."}},
    {"fields are sorted",
     "zxCreateStructArray: Size and field names must be kept, the names in the order given.",
     {"zxSetField: Each of several thousand fields must be found."}},
    {"new arrays are dirty", "zxCreateNumericArray: All elements of a new array must be zero."},
    {"no dimensions are 1 x 1",
     "zxCreateNumericArray: Without dimensions it must make an empty 0 x 0 double."},
    {"dimensions are swapped",
     "zxGetElements: Elements must stand column by column, and what is written there must be in "
     "the value.",
     {"zxCreateNumericArray: The first dimension must be the rows, the second the columns."}},
    {"numbers are floats", "zxCreateDoubleScalar: A number must become the 1 x 1 double of it."},
    {"scalar is an integer", "zxGetScalar: It must give the first element of a double array."},
    {"destroy leaks",
     "destroyArray: A value that is destroyed must be freed.",
     {"create: A handle that goes out of use must free its value.",
      "zxSetCell: What the cell held must be destroyed and replaced.",
      "zxSetField: What the field held must be destroyed and replaced.",
      "zxSetField: Null must leave the field unset and destroy what it held.",
      "destroyArray: What a cell or struct array holds must be destroyed with it, however deep.",
      "zxWarningMsgId: What takes a warning must be able to make, store and destroy values."}},
    {"empty texts are rows",
     "zxCreateCharArray: 0 x 0 must give an empty char array of that size.",
     {"isScalarText: It must be false for numbers, cells, structs and char arrays that are no "
      "row."}},
    {"words are Latin-1", "zxCreateString: The text must be read as UTF-8."},
    {"surrogates are replaced", "create (UTF-16): A surrogate without its partner must be kept."},
    {"bytes end at a zero",
     "create (UTF-8): The bytes must be read as UTF-8, zeros among them, up to the length."},
    {"the handle keeps the value", "to_korvel: The value must live on and belong to the caller."},
    {"strings are no text",
     "isScalarText: It must be true for a string scalar, a missing one included."},
    {"all is text",
     "isScalarText: It must be false for numbers, cells, structs and char arrays that are no "
     "row."},
    {"missing strings are empty",
     "getString: It must give nothing for a missing string, and an empty text for an empty one."},
    {"warnings lose their arguments",
     "zxWarningMsgId: ID and arguments of a warning must reach the host's sink unchanged and in "
     "order."},
    {"a warning comes once",
     "zxWarningMsgId: Every warning must reach the sink, in the order issued, also one that came "
     "before.",
     {"zxWarningMsgId: What takes a warning must be able to issue another."}},
    {"warnings do not nest", "zxWarningMsgId: What takes a warning must be able to issue another."},
    {"warnings swallow exceptions",
     "zxWarningMsgId: What the taker of a warning raises must pass to the caller unchanged."},
    {"errors return", "do_legacy_zx_error: It must raise and not return."},
    {"errors lose their arguments",
     "do_legacy_zx_error: What it raises must carry the ID and the arguments unchanged."},
    {"names end at a zero",
     "exists: It must be false, and not raise, for names that no file can have."},
    {"sizes have 32 bits", "status: It must tell sizes beyond 4 GiB."},
    {"times are local", "status: The time of modification must be UTC."},
    {"a missing file is raised", "status: It must give the initial record where there is no file."},
    {"streams start at the end",
     "fopen: Modes \"r\" and \"rb\" must open a file at its start and give its bytes unchanged."},
    {"local time is UTC",
     "from_utc: It must give the wall-clock time of the local zone.",
     {"from_utc: It must know summer time."}},
    {"invalid bytes are dropped",
     "to_ustring: Each maximal invalid subpart must become one U+FFFD."},
    {"unrecognized has a name",
     "detect_charset: No bytes must give the name for what is not recognised, as the caller wrote "
     "it."},
    {"zeros tell UTF-16",
     "detect_charset: A short ASCII text with its closing zero must not be taken for UTF-16."},
    {"conversion is strict",
     "codecvt_string_to_ustring: In lenient mode bad sequences must become U+FFFD, and it must "
     "not raise."},
};

class FaultyHosts : public testing::TestWithParam<Fault> {};

TEST_P(FaultyHosts, FailTheCheckOfTheirFault) {
    const ProcessResult result = test::run({CORVINEX_FAULTY_HOST_KIT, GetParam().name}, limit);
    EXPECT_EQ(result.exitStatus, 1) << result.err;
    const std::vector<std::string> failed = failedChecks(result);
    std::multiset<std::string> expected(GetParam().others.begin(), GetParam().others.end());
    expected.insert(GetParam().sentence);
    EXPECT_EQ(std::multiset<std::string>(failed.begin(), failed.end()), expected);
}

INSTANTIATE_TEST_SUITE_P(HostKit, FaultyHosts, testing::ValuesIn(faults),
                         [](const auto& parameter) {
                             std::string name = parameter.param.name;
                             std::ranges::replace_if(
                                 name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
                             return name;
                         });

TEST(HostKit, HoldsOnTheStandAloneHost) {
    const ProcessResult result = test::run(withModule(CORVINEX_STAND_ALONE_HOST_KIT), limit);
    EXPECT_EQ(result.exitStatus, 0) << result.out << result.err;
}

TEST(HostKit, HoldsOnTheOtherHost) {
    const ProcessResult result = test::run(withModule(CORVINEX_OTHER_HOST_KIT), limit);
    EXPECT_EQ(result.exitStatus, 0) << result.out << result.err;
}

TEST(HostKit, HoldsOnTheHostBehindTheFaultsWhenNoneIsChosen) {
    const ProcessResult result = test::run({CORVINEX_FAULTY_HOST_KIT, "none"}, limit);
    EXPECT_EQ(result.exitStatus, 0) << result.out << result.err;
}

TEST(HostKit, SeesFaultsThroughTheModuleToo) {
    std::vector<std::string> words = withModule(CORVINEX_FAULTY_HOST_KIT);
    words.insert(words.begin() + 1, "warnings swallow exceptions");
    const ProcessResult result = test::run(words, limit);
    EXPECT_EQ(result.exitStatus, 1);
    const std::vector<std::string> expected = {
        "zxWarningMsgId: What the taker of a warning raises must pass to the caller unchanged.",
        "zekFunction: What the taker of a warning raises must come out of the call unchanged."};
    EXPECT_EQ(failedChecks(result), expected);
}

TEST(HostKit, ListsEachCheckOnceWithItsOperationAndSentence) {
    const ProcessResult result = test::run({CORVINEX_STAND_ALONE_HOST_KIT, "--list"}, limit);
    EXPECT_EQ(result.exitStatus, 0);
    const std::vector<std::string> lines = linesOf(result.out);
    EXPECT_GE(lines.size(), 90U);
    std::set<std::string> names;
    for (const std::string& line : lines) {
        names.insert(line.substr(0, line.find(": ")));
        EXPECT_EQ(std::ranges::count(line, ':') >= 2, true) << line;
        EXPECT_TRUE(line.ends_with('.')) << line;
    }
    EXPECT_EQ(names.size(), lines.size());
}

TEST(HostKit, RunsOneCheckByName) {
    const ProcessResult result =
        test::run({CORVINEX_STAND_ALONE_HOST_KIT, "--only", "field-null"}, limit);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(linesOf(result.out),
              std::vector{"1 of 1 checks hold; those with a module were left out"s});
}

TEST(HostKit, RefusesArgumentsThatItDoesNotKnow) {
    for (const std::vector<std::string>& words :
         {std::vector{"--lost"s}, {"--only"s, "no-such-check"s}, {"--module"s, "/nowhere.so"s}}) {
        std::vector<std::string> command{CORVINEX_STAND_ALONE_HOST_KIT};
        command.insert(command.end(), words.begin(), words.end());
        const ProcessResult result = test::run(command, limit);
        EXPECT_EQ(result.exitStatus, 2) << words.front();
        EXPECT_FALSE(result.err.empty()) << words.front();
    }
}

}  // namespace
