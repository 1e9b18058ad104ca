#include <gtest/gtest.h>
#include <malloc.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "host/values/value.h"
#include "tests/entry/entry_call.h"
#include "tests/faults/file_services.h"
#include "tests/support/faults.h"
#include "tests/support/temporary_file.h"
#include "tests/support/tiff_builder.h"

// When the file is closed, in the order of what else a call does at its end.

namespace test {
namespace {

FileEffect pass(const FileCall& /*call*/) {
    return {};
}

Bytes oneDirectory(std::size_t entries) {
    std::vector<Field> list;
    for (std::size_t i = 0; i < entries; ++i) {
        list.push_back(number(static_cast<std::uint16_t>(50000 + i), SHORT, 1));
    }
    TiffBuilder builder;
    builder.add(std::move(list));
    return builder.chain({0}).bytes();
}

TEST(ClosingOrder, TheResultIsStoredBeforeTheFileIsClosed) {
    const TemporaryFile file(oneDirectory(1));
    const Inputs inputs(file.name());
    std::vector<const zxArray*> list = inputs.list();
    std::array<zxArray*, 1> outputs{nullptr};
    std::vector<bool> isStored;  // at each closing; the last one is that of the file being read
    const ScopedFileServices services(Buffering::Full, pass,
                                      [&] { isStored.push_back(outputs[0] != nullptr); });
    exportedFunction<decltype(zekFunction)>("zekFunction")(1, outputs.data(), 4, list.data());
    const host::ValuePtr owner(outputs[0]);
    ASSERT_GE(isStored.size(), 2U);
    EXPECT_TRUE(isStored.back());
    isStored.pop_back();
    EXPECT_EQ(isStored, std::vector<bool>(isStored.size(), false));
}

TEST(ClosingOrder, TheFileIsClosedBeforeTheDirectoriesAreReleased) {
#ifdef CORVINEX_SANITIZED
    GTEST_SKIP() << "The sanitizer's memory is not counted by the C library.";
#endif
    constexpr std::size_t entries = 1000;
    const TemporaryFile file(oneDirectory(entries));
    const Inputs inputs(file.name());
    std::size_t inUseAtClosing = 0;
    const ScopedFileServices services(Buffering::Full, pass,
                                      [&] { inUseAtClosing = ::mallinfo2().uordblks; });
    // The first operation of packaging fails, so that all directories are still there.
    const test::ScopedFault fault(test::Operation::zxCreateStructArray, 1);
    zxArray* output = nullptr;
    EXPECT_THROW(callEntry(inputs, output), test::OperationFailed);
    constexpr std::size_t bytesOfATag = 32;
    EXPECT_GT(inUseAtClosing, ::mallinfo2().uordblks + entries * bytesOfATag);
}

}  // namespace
}  // namespace test
