#include <dlfcn.h>
#include <gtest/gtest.h>

#include <boost/date_time/posix_time/posix_time.hpp>
#include <cstddef>
#include <ctime>

#include "file/file_information.h"
#include "host/messages/reports.h"
#include "tests/support/module_call.h"

// A time that the C library cannot format. Its function is replaced in this program by one that
// fails on command.

namespace {

bool formattingFails = false;

}  // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" std::size_t strftime(char* text, std::size_t size, const char* format,
                                const std::tm* time) noexcept {
    if (formattingFails) {
        return 0;
    }
    using Function = std::size_t (*)(char*, std::size_t, const char*, const std::tm*);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "strftime"));
    return real(text, size, format, time);
}

namespace {

TEST(FormattingTheModificationDate, ThatFailsIsFatal) {
    const auto time = boost::posix_time::time_from_string("2024-03-05 14:07:09");
    formattingFails = true;
    try {
        static_cast<void>(corvinex::formatLocalTime(time));
        ADD_FAILURE() << "no error was raised";
    } catch (const host::Error& error) {
        EXPECT_EQ(error.report(), test::report("strftimeFailure"));
    }
    formattingFails = false;
}

}  // namespace
