#include "tool/catalogue/catalogue_merge.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/tool/command_files.h"
#include "tests/tool/tiff_bytes.h"
#include "tool/catalogue/part_writer.h"

namespace {

using namespace tool_test;
using tool::CatalogueMerge;
using tool::DatabaseError;
using tool::RowCounts;

const tool::MergedScan scan{.started = "2026-01-02T03:04:05Z",
                            .finished = "2026-01-02T03:04:06Z",
                            .version = "1",
                            .folder = "/\xFF",
                            .maxValues = 64,
                            .headerOffset = std::nullopt};

class Merge : public testing::Test {
  protected:
    /// A catalogue of images with one tag each.
    [[nodiscard]] std::string part(const std::string& name,
                                   const std::vector<std::string>& images) const {
        std::vector<tool::ListedPath> files;
        for (const std::string& image : images) {
            files.push_back({folder.file(
                image, TiffBytes().header(8).count(1).shortEntry(256, 5).offset(0).bytes())});
        }
        tool::PartOptions options;
        options.records = folder.path("jsonl");
        options.catalogue = folder.path(name);
        static_cast<void>(tool::writePart(files, options));
        return options.catalogue;
    }

    const TemporaryFolder folder;
    const std::string path = folder.path("merged.sqlite");
};

}  // namespace

TEST_F(Merge, LeavesOutAFileThatAnEarlierPartHas) {
    CatalogueMerge merge(path, scan);
    const auto first = merge.add(part("1", {"a.tif", "b.tif"}));
    EXPECT_EQ(first.rows.files, 2U);
    EXPECT_EQ(first.rows.directories, 2U);
    EXPECT_EQ(first.rows.tags, 2U);
    EXPECT_EQ(first.repeated, 0U);
    const auto second = merge.add(part("2", {"b.tif", "c.tif", "a.tif", "d.tif"}));
    EXPECT_EQ(second.rows, first.rows);
    EXPECT_EQ(second.repeated, 2U);
    const RowCounts counts = merge.finish();
    EXPECT_EQ(counts.files, 4U);
    EXPECT_EQ(counts.tags, 4U);

    tool::Database merged(path);
    EXPECT_EQ(merged.number("SELECT count(*) FROM tags JOIN directories ON directories.id = "
                            "directory_id JOIN files ON files.id = file_id WHERE integer = 5"),
              4);
    EXPECT_EQ(merged.number("SELECT found = 4 AND written = 4 AND typeof(folder) = 'blob' FROM "
                            "scans WHERE id = (SELECT min(scan_id) FROM files)"),
              1);
}

TEST_F(Merge, RefusesWhatIsNoCatalogue) {
    {
        tool::Database other(folder.path("other"));
        other.execute("CREATE TABLE files (id)");
    }
    CatalogueMerge merge(path, scan);
    EXPECT_THROW(static_cast<void>(merge.add(folder.path("other"))), DatabaseError);
}

TEST_F(Merge, RefusesAPlaceThatIsTaken) {
    const std::string taken = part("1", {"a.tif"});
    EXPECT_THROW(CatalogueMerge(taken, scan), DatabaseError);
}
