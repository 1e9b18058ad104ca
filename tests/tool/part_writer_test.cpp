#include "tool/catalogue/part_writer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include "tests/tool/command_files.h"
#include "tests/tool/tiff_bytes.h"
#include "tool/catalogue/database.h"

namespace {

using namespace tool_test;
using tool::ListedPath;
using tool::PartOptions;

class PartWriter : public testing::Test {
  protected:
    [[nodiscard]] PartOptions options() const {
        PartOptions options;
        options.records = folder.path("part.jsonl");
        options.catalogue = folder.path("part.sqlite");
        return options;
    }
    [[nodiscard]] std::string image(const std::string& name) const {
        return folder.file(name,
                           TiffBytes().header(8).count(1).shortEntry(256, 5).offset(0).bytes());
    }
    [[nodiscard]] static std::string contentOf(const std::string& path) {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    /// The columns of a file that a person reads, and its findings.
    [[nodiscard]] static std::string rowOf(const std::string& catalogue) {
        tool::Database database(catalogue);
        tool::Statement row(database,
                            "SELECT json_array(status, reason, container, size, files.derived, "
                            "findings.id, findings.severity, findings.arguments, findings.text) "
                            "FROM files JOIN findings ON file_id = files.id");
        return row.next() ? std::string(row.text(0)) : "";
    }

    const TemporaryFolder folder;
};

}  // namespace

TEST_F(PartWriter, TellsOfARefusedFileWhatItTellsOfAnUnreadableOne) {
    const std::vector<ListedPath> files{{folder.path("a.tif")}};
    const auto missing = tool::writePart(files, options());
    const std::string record = contentOf(options().records);
    const std::string row = rowOf(options().catalogue);
    ASSERT_EQ(missing.unreadable.size(), 1U);

    PartOptions refusing = options();
    refusing.refused.emplace(0, missing.unreadable.front().reason);
    std::filesystem::remove(refusing.catalogue);
    const auto refused = tool::writePart(files, refusing);
    EXPECT_EQ(contentOf(refusing.records), record);
    EXPECT_EQ(rowOf(refusing.catalogue), row);
    EXPECT_EQ(refused.byStatus, missing.byStatus);
    EXPECT_EQ(refused.findings, missing.findings);
}

TEST_F(PartWriter, PassesOverWhatNobodyAskedFor) {
    const std::vector<ListedPath> files{{folder.file("text", "no image"), false},
                                        {image("a"), false}};
    const auto result = tool::writePart(files, options());
    EXPECT_EQ(result.passedOver, 1U);
    EXPECT_EQ(result.records, 1U);
    ASSERT_EQ(result.stamps.size(), 2U);
    EXPECT_EQ(result.stamps.front(), tool::stampOf(folder.path("text")));
}

TEST_F(PartWriter, RaisesWhatKeepsRecordsFromBeingWritten) {
    PartOptions full = options();
    full.records = "/dev/full";
    const std::vector<ListedPath> files{{image("a.tif")}};
    EXPECT_THROW(static_cast<void>(tool::writePart(files, full)), std::system_error);
    full.records = folder.path("missing/part.jsonl");
    EXPECT_THROW(static_cast<void>(tool::writePart(files, full)), std::system_error);
}
