#include <gtest/gtest.h>

#include "host/messages/reports.h"
#include "host/values/value.h"
#include "tests/entry/entry_call.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

namespace {

using host::ValuePtr;

test::Bytes twoPages() {
    test::TiffBuilder builder;
    builder.add({test::text(305, "first")});
    builder.add({test::text(305, "second")});
    return builder.chain({0, 1}).bytes();
}

}  // namespace

TEST(EntryOutput, IsAColumnOfStructsOneForEachDirectory) {
    const test::TemporaryFile file(twoPages());
    zxArray* output = nullptr;
    test::callEntry(test::Inputs(file.name()), output);
    const ValuePtr owner(output);
    ASSERT_NE(output, nullptr);
    EXPECT_EQ(host::classOf(*output), host::ValueClass::Struct);
    EXPECT_EQ(host::sizeOf(*output), (host::Size{2, 1}));
}

TEST(EntryOutput, IsAnEmptyDoubleWhenNoDirectoryWasKept) {
    // The header is all there is: the first directory would stand at the end of the file.
    test::ByteWriter writer(test::Order::Little);
    writer.text("II").number(42, 2).number(8, 4);
    const test::Result result = test::read(writer.bytes());
    EXPECT_EQ(host::classOf(result.output()), host::ValueClass::Double);
    EXPECT_EQ(host::sizeOf(result.output()), (host::Size{0, 0}));
    EXPECT_EQ(result.warnings(),
              std::vector{test::report("numberOfDirectoryEntriesReadError", {8U})});
}

TEST(EntryOutput, IsWrittenOnlyOnSuccess) {
    const ValuePtr marker = host::makeNumber(42);
    const test::TemporaryFile noTiff({'n', 'o', 'n', 'e'});
    const test::TemporaryFile noHeader({'I', 'I', 42, 0});
    for (const auto& name : {std::u16string(u"/no/such/file"), noTiff.name(), noHeader.name()}) {
        zxArray* output = marker.get();
        EXPECT_THROW(test::callEntry(test::Inputs(name), output), host::Error);
        EXPECT_EQ(output, marker.get());
    }
}

TEST(EntryOutput, BelongsToTheHostAndNothingElseIsLeft) {
    const std::size_t before = host::livingValues();
    {
        const test::TemporaryFile file(twoPages());
        zxArray* output = nullptr;
        test::callEntry(test::Inputs(file.name()), output);
        const ValuePtr owner(output);
        EXPECT_GT(host::livingValues(), before);
    }
    EXPECT_EQ(host::livingValues(), before);
}

TEST(EntryCounts, AreNotExamined) {
    const test::TemporaryFile file(twoPages());
    const test::Inputs inputs(file.name());
    auto list = inputs.list();
    for (const int count : {-1, 0, 99}) {
        zxArray* outputs[] = {nullptr};
        test::exportedFunction<decltype(zekFunction)>("zekFunction")(count, outputs, count,
                                                                     list.data());
        const ValuePtr owner(outputs[0]);
        ASSERT_NE(owner, nullptr);
        EXPECT_EQ(host::sizeOf(*owner).rows, 2U);
    }
}

TEST(EntryState, IsNotKeptBetweenCalls) {
    const test::TemporaryFile file(twoPages());
    const test::Result first = test::readFile(file.name());
    const test::Result failed = test::readFile(u"/no/such/file");
    const test::Result second = test::readFile(file.name());
    EXPECT_EQ(failed.error(), test::report("statFailure"));
    EXPECT_EQ(test::fieldsOf(first.output()), test::fieldsOf(second.output()));
    EXPECT_EQ(second.directories(), 2U);
}

TEST(ApiVersion, IsTheArrayInterfaceVersionBesideAHostRelease) {
    unsigned int release = 0;
    unsigned int version = 0;
    test::exportedFunction<decltype(zekfilerequiredapiversion)>("zekfilerequiredapiversion")(
        &release, &version);
    EXPECT_EQ(version, 0x08000000U);
    EXPECT_NE(release, 0U);
}
