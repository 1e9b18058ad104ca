#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "directory/ifd_tree.h"
#include "entry/reports/internal_errors.h"
#include "file/tag_file.h"
#include "tests/directory/tiff_variants.h"
#include "tests/support/temporary_file.h"

// The classes of directories and directory sets by themselves.

namespace test {
namespace {

using corvinex::HostArray;
using corvinex::IFD;
using corvinex::IFDTree;
using corvinex::IFDtype_t_;
using corvinex::TagFile;

/// A file, open, with its header read and its stream at the first directory.
class OpenFile {
  public:
    OpenFile(const TiffVariant& tiff, const Bytes& bytes)
        : file_(bytes), tagFile_(file_.name(), 0, 0, 0) {
        tagFile_.readThroughTagFile();
        seek(tiff.headerSize());
    }
    void seek(std::uint64_t position) { ASSERT_TRUE(tagFile_.getStream().seek(position)); }
    [[nodiscard]] TagFile* get() { return &tagFile_; }

  private:
    TemporaryFile file_;
    TagFile tagFile_;
};

class DirectorySet : public EveryTiff {
  protected:
    /// Two directories with named and unknown tags.
    [[nodiscard]] static Bytes twoDirectories() {
        TiffBuilder builder = newBuilder();
        builder.add({text(305, "s"), number(256, SHORT, 640), number(65000, SHORT, 1)});
        builder.add({text(306, "d"), number(262, SHORT, 2), shorts(258, {8, 8, 8})});
        builder.chain({0, 1});
        return builder.bytes();
    }
};
CORVINEX_FOR_EVERY_TIFF(DirectorySet);

void expectTwoDirectories(IFDTree& tree) {
    EXPECT_EQ(tree.size(), 2U);
    const HostArray output = tree.repackageIfds();
    ASSERT_EQ(host::sizeOf(*output), (host::Size{2, 1}));
    EXPECT_EQ(fieldsOf(*output).size(), 38U);
    EXPECT_EQ(textOf(fieldOf(*output, "Software", 0)), "s");
    EXPECT_EQ(numberOf(fieldOf(*output, "Width", 0)), 640);
    EXPECT_EQ(numberOf(fieldOf(fieldOf(*output, "UnknownTags", 0), "ID")), 65000);
    EXPECT_EQ(textOf(fieldOf(*output, "DateTime", 1)), "d");
    EXPECT_EQ(textOf(fieldOf(*output, "ColorType", 1)), "truecolor");
    EXPECT_EQ(numberOf(fieldOf(*output, "BitDepth", 1)), 24);
    EXPECT_GT(numberOf(fieldOf(*output, "Offset", 1)), numberOf(fieldOf(*output, "Offset", 0)));
}

TEST_P(DirectorySet, IsCompleteWhenItIsMade) {
    OpenFile file(tiff(), twoDirectories());
    IFDTree tree(file.get(), IFDtype_t_::Main);
    EXPECT_EQ(tree.getIfds().size(), 2U);
    expectTwoDirectories(tree);
}

TEST_P(DirectorySet, ThatIsEmptyHasNoDirectory) {
    EXPECT_EQ(IFDTree().size(), 0U);
    IFDTree tree;
    const HostArray output = tree.repackageIfds();
    EXPECT_EQ(host::sizeOf(*output), (host::Size{0, 0}));
    EXPECT_EQ(host::classOf(*output), host::ValueClass::Double);
}

TEST_P(DirectorySet, IsCopiedWhole) {
    OpenFile file(tiff(), twoDirectories());
    IFDTree original(file.get(), IFDtype_t_::Main);
    IFDTree copy(original);
    expectTwoDirectories(copy);
    expectTwoDirectories(original);
}

TEST_P(DirectorySet, IsAssignedWhole) {
    OpenFile file(tiff(), twoDirectories());
    IFDTree original(file.get(), IFDtype_t_::Main);
    IFDTree target;
    target = original;
    expectTwoDirectories(target);
    expectTwoDirectories(original);
}

TEST_P(DirectorySet, TakesOverNothingOldWhenItIsAssigned) {
    OpenFile file(tiff(), twoDirectories());
    const IFDTree source(file.get(), IFDtype_t_::EXIF);
    TiffBuilder builder = newBuilder();
    builder.add({text(315, "a"), number(65001, SHORT, 1)});
    OpenFile other(tiff(), builder.bytes());
    IFDTree target(other.get(), IFDtype_t_::Main);
    target = source;
    const HostArray output = target.repackageIfds();
    EXPECT_EQ(fieldsOf(*output), (Names{"Software", "UnknownTags"}));
    EXPECT_EQ(host::sizeOf(*output), (host::Size{1, 1}));
}

TEST_P(DirectorySet, IsMovedWhole) {
    OpenFile file(tiff(), twoDirectories());
    IFDTree original(file.get(), IFDtype_t_::Main);
    IFDTree moved(std::move(original));
    IFDTree target;
    target = IFDTree(moved);
    expectTwoDirectories(moved);
    expectTwoDirectories(target);
}

// Kept as it is: the set is cleared before it is compared with its source.
TEST_P(DirectorySet, LosesItsDirectoriesWhenItIsAssignedToItself) {
    TiffBuilder builder = newBuilder();
    builder.add({text(305, "s")});
    OpenFile file(tiff(), builder.bytes());
    IFDTree tree(file.get(), IFDtype_t_::Main);
    ASSERT_EQ(tree.size(), 1U);
    const IFDTree& itself = tree;
    tree = itself;
    EXPECT_EQ(tree.size(), 0U);
    EXPECT_EQ(host::sizeOf(*tree.repackageIfds()), (host::Size{0, 0}));
}

TEST_P(DirectorySet, OfAnotherKindThanMainHoldsOneDirectory) {
    for (const IFDtype_t_ kind :
         {IFDtype_t_::GPS, IFDtype_t_::Interoperability, IFDtype_t_::EXIF}) {
        OpenFile file(tiff(), twoDirectories());
        const IFDTree tree(file.get(), kind);
        EXPECT_EQ(tree.size(), 1U);
    }
}

TEST_P(DirectorySet, IsNotLeftHalfMadeByAnErrorThatPasses) {
    TiffBuilder builder = newBuilder();
    builder.add({text(305, "s")});
    const std::uint64_t position = builder.positionOf(builder.add({shorts(256, {1, 2})}));
    builder.add({text(305, "s")});
    OpenFile file(tiff(), builder.bytes());
    file.seek(position);
    EXPECT_THROW(IFDTree(file.get(), IFDtype_t_::Main), host::Error);
    file.seek(tiff().headerSize());
    EXPECT_EQ(IFDTree(file.get(), IFDtype_t_::Main).size(), 1U);
}

TEST_P(DirectorySet, DirectoriesReadNothingWhenTheyAreMade) {
    OpenFile file(tiff(), twoDirectories());
    const std::uint64_t position = file.get()->getStream().tell();
    const IFD ifd(file.get(), IFDtype_t_::EXIF);
    EXPECT_EQ(file.get()->getStream().tell(), position);
    EXPECT_EQ(ifd.size(), 0U);
    EXPECT_TRUE(ifd.getTags().empty());
}

TEST_P(DirectorySet, UnnamedTagsCountAsOneOfADirectorysFields) {
    TiffBuilder builder = newBuilder();
    builder.add(
        {number(65000, SHORT, 1), text(305, "s"), number(65001, SHORT, 1), number(256, SHORT, 1)});
    OpenFile file(tiff(), builder.bytes());
    IFD ifd(file.get(), IFDtype_t_::EXIF);
    ifd.process();
    EXPECT_EQ(ifd.getTags().size(), 1U);
    EXPECT_TRUE(ifd.hasUnknownTags());
    EXPECT_EQ(ifd.size(), 2U);
}

TEST_P(DirectorySet, ADirectoryWhoseEntriesAreDroppedKeepsNoRoomForThem) {
    constexpr std::uint16_t noType = 99;
    TiffBuilder builder = newBuilder();
    std::vector<Field> fields(1000, at(305, noType, 1, 0));
    fields.front() = text(305, "s");
    fields[1] = number(65000, SHORT, 1);
    builder.add(std::move(fields));
    OpenFile file(tiff(), builder.bytes());
    IFD ifd(file.get(), IFDtype_t_::EXIF);
    ifd.process();
    EXPECT_EQ(ifd.getTags().size(), 1U);
    EXPECT_LE(ifd.getTags().capacity(), 64U);
}

TEST_P(DirectorySet, GivesBackTheMemoryOfDirectoriesThatArePackaged) {
    constexpr std::size_t length = 200;
    TiffBuilder builder = newBuilder();
    std::vector<std::size_t> chain;
    for (std::size_t i = 0; i < length; ++i) {
        chain.push_back(builder.add({text(305, "a text outside the entry")}));
    }
    OpenFile file(tiff(), builder.chain(chain).bytes());
    IFDTree tree(file.get(), IFDtype_t_::Main);
    ASSERT_EQ(tree.size(), length);
    // The arena of the last directories. The file holds a share of it for those to come, and its
    // own set may have directories in it.
    const std::weak_ptr<corvinex::DirectoryArena> arena = file.get()->beginDirectory();
    EXPECT_GT(arena.use_count(), 1);
    EXPECT_LT(arena.use_count(), static_cast<long>(2 * length)) << "there are several arenas";
    const HostArray output = tree.repackageIfds();
    const HostArray outputOfTheFile = file.get()->repackageIfds();
    EXPECT_EQ(arena.use_count(), 1) << "the share of the file alone is left";
    EXPECT_EQ(textOf(fieldOf(*output, "Software", length - 1)), "a text outside the entry");
}

TEST_P(DirectorySet, CopiesOutliveTheMemoryOfTheirSource) {
    OpenFile file(tiff(), twoDirectories());
    IFDTree copy;
    {
        IFDTree original(file.get(), IFDtype_t_::Main);
        copy = original;
        static_cast<void>(original.repackageIfds());
    }
    expectTwoDirectories(copy);
}

TEST_P(DirectorySet, ADirectoryOfWidthAndLengthAloneHasSizeZero) {
    TiffBuilder builder = newBuilder();
    builder.add({number(256, SHORT, 1), number(257, SHORT, 1)});
    OpenFile file(tiff(), builder.bytes());
    IFD ifd(file.get(), IFDtype_t_::EXIF);
    ifd.process();
    EXPECT_EQ(ifd.size(), 0U);
    EXPECT_EQ(ifd.getEntriesLength(), 2 * tiff().entrySize());
}

TEST_P(DirectorySet, ACopyOfADirectoryHasItsTagsAndFactsAndNoEntries) {
    OpenFile file(tiff(), twoDirectories());
    IFD ifd(file.get(), IFDtype_t_::Main);
    ifd.process();
    const IFD copy(ifd);
    EXPECT_EQ(copy.size(), ifd.size());
    EXPECT_EQ(copy.getTags().size(), ifd.getTags().size());
    EXPECT_EQ(copy.getOffset(), tiff().headerSize());
    EXPECT_TRUE(copy.hasUnknownTags());
    EXPECT_EQ(copy.getEntriesLength(), 0U);
    const IFD moved(std::move(ifd));
    EXPECT_EQ(moved.size(), copy.size());
    EXPECT_EQ(moved.getOffset(), tiff().headerSize());
    EXPECT_TRUE(moved.hasUnknownTags());
    EXPECT_EQ(moved.getEntriesLength(), 0U);
}

TEST_P(DirectorySet, ADirectoryThatCannotStartEndsItsChain) {
    TiffBuilder builder = newBuilder();
    builder.add({mark(1)});
    const std::uint64_t position = builder.positionOf(builder.add({}));
    OpenFile file(tiff(), builder.bytes());
    file.seek(position);
    IFD empty(file.get(), IFDtype_t_::Main);
    EXPECT_THROW(empty.process(), corvinex::StopProcessingIfdChainException);
    file.seek(builder.bytes().size());
    IFD missing(file.get(), IFDtype_t_::Main);
    EXPECT_THROW(missing.process(), corvinex::StopProcessingIfdChainException);
    file.seek(position);
    EXPECT_EQ(IFDTree(file.get(), IFDtype_t_::EXIF).size(), 0U);
}

}  // namespace
}  // namespace test
