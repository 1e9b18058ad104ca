#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "tests/corpus/bounded_process.h"
#include "tests/support/module_call.h"

// docs/hosts.md lists the operations that the module asks for; a script writes the list.

namespace {

test::ProcessResult check(const std::string& module) {
    return test::run({CORVINEX_HOST_OPERATIONS, "--check", module}, std::chrono::seconds(60));
}

TEST(HostsPage, ListsTheOperationsThatTheModuleAsksFor) {
    const test::ProcessResult result = check(test::modulePath());
    EXPECT_EQ(result.exitStatus, 0) << result.out << result.err;
}

TEST(HostsPage, IsOutOfDateForAModuleThatAsksForOthers) {
    const test::ProcessResult result = check(CORVINEX_MODULE_DOUBLE);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_NE(result.out.find("-matrix::to_korvel(matrix::unique_zxArray)\n"), std::string::npos);
    EXPECT_NE(result.err.find("is not up to date"), std::string::npos);
}

}  // namespace
