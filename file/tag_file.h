#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <memory_resource>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "directory/ifd_tree.h"
#include "directory/pointer_guard.h"
#include "entry/values/host_array.h"
#include "file/file_format.h"
#include "file/file_stream.h"
#include "host/interface/message.h"
#include "host/interface/platform.h"
#include "tag/directory_arena.h"

namespace corvinex {

/// The file being read during one request: its stream, kind, byte order, main directory set and the
/// warnings already issued. Directories and tags hold a plain pointer to it and live only while it
/// does. The stream's position is shared by all of them: whoever moves away positions for itself.
/// Used by one thread.
class TagFile {
  public:
    /// Checks that the file exists, detects its kind and opens it. header is the byte position of
    /// the TIFF header, skip the number of directories to pass over, limit the most directories of
    /// one set, 0 for any number. Raises statFailure and unsupportedFileFormat.
    TagFile(std::u16string name, unsigned long long header, unsigned long skip,
            unsigned long limit);
    TagFile(const TagFile&) = delete;
    TagFile& operator=(const TagFile&) = delete;
    /// Closes the stream before the directories are released.
    ~TagFile();

    /// Reads the header, skips directories and reads the main chain. Raises tiffHeaderReadFailure,
    /// badEndianness, badTiffIfdOffset, badTiffHeaderIfdOffset, unableToReadTagData, and what the
    /// directories raise.
    void readThroughTagFile();

    // Towards the host. This is defined in tag_file_output.cpp, which reading does without.

    /// The result: the main set's struct array, or a 0 x 0 double when no directory was kept.
    [[nodiscard]] HostArray repackageIfds();

    /// Read the entry count, or a directory offset, at the stream's position, in the file's width
    /// and byte order. Return the number of items read: 1, or 0 on a short read.
    [[nodiscard]] std::size_t freadNumDirectoryEntries(unsigned long long* count);
    [[nodiscard]] std::size_t freadNextIfdOffset(unsigned long long* offset);

    /// A directory offset in memory.
    [[nodiscard]] std::uint64_t readNextIfdOffset(std::span<const unsigned char> offset) const;

    /// The value/offset field, and the count field, of a directory entry in memory.
    [[nodiscard]] std::uint64_t readTagDataOffset(std::span<const unsigned char> entry) const;
    [[nodiscard]] std::uint64_t readTagNumComponents(std::span<const unsigned char> entry) const;

    /// Issues a warning unless one with this key was issued during this request.
    void warnOncePerFile(const std::string& key, const resource_core::BaseMsgID& message);

    [[nodiscard]] FileFormat getFileFormat() const noexcept { return fileFormat; }
    [[nodiscard]] bool isJpegFile() const noexcept { return fileFormat == FileFormat::JPEG; }
    [[nodiscard]] const std::u16string& getFilename() const noexcept { return filename; }
    [[nodiscard]] const fl::filesystem::file_status& getFileStatus() const noexcept {
        return fileStatus;
    }
    [[nodiscard]] std::uint64_t getFileSize() const noexcept { return fileStatus.fileSize; }
    [[nodiscard]] FileStream& getStream() noexcept { return stream; }
    [[nodiscard]] std::uint64_t getMaxIfdsPerSet() const noexcept { return maxIfdsPerSet; }
    [[nodiscard]] std::uint64_t getOffsetSize() const noexcept { return offsetSize; }
    [[nodiscard]] bool getSwapBytes() const noexcept { return swapBytes; }
    [[nodiscard]] std::uint64_t getEntrySize() const noexcept { return entrySize; }
    [[nodiscard]] std::uint64_t getBaseOffset() const noexcept { return baseOffset; }
    [[nodiscard]] std::uint64_t getValueFieldPosition() const noexcept {
        return valueFieldPosition;
    }
    [[nodiscard]] std::uint64_t getEntryCountSize() const noexcept { return entryCountSize; }
    [[nodiscard]] const std::array<unsigned char, 4>& getHeaderSignature() const noexcept {
        return headerSignature;
    }
    [[nodiscard]] std::span<const char* const> getDefaultFields() const noexcept {
        return defaultFields;
    }
    /// Memory for the entries of a directory, of any length and content, to be given back for the
    /// next one. What a long directory needed is not kept.
    [[nodiscard]] std::vector<unsigned char> takeEntryBuffer() noexcept {
        return std::move(spareEntryBuffer);
    }
    void giveBackEntryBuffer(std::vector<unsigned char>&& buffer) noexcept {
        constexpr std::size_t most = std::size_t{16} << 10;
        if (buffer.capacity() <= most) {
            spareEntryBuffer = std::move(buffer);
        } else {
            std::vector<unsigned char>().swap(buffer);
        }
    }
    [[nodiscard]] PointerGuard& getPointerGuard() noexcept { return pointerGuard; }

    /// The arena of a directory that is about to be read: directories of a chain share arenas, and
    /// sub-directories lie in that of the directory which leads to them. Raises std::bad_alloc.
    [[nodiscard]] std::shared_ptr<DirectoryArena> beginDirectory();
    /// The arena of the latest directory.
    [[nodiscard]] DirectoryArena& getArena() noexcept { return *arena; }
    /// Where a set keeps its directories: sets behind pointers in the arena, and others elsewhere,
    /// as they outlive the arenas of their directories.
    [[nodiscard]] std::pmr::memory_resource& getSetMemory() noexcept {
        return pointerGuard.isFollowing() ? *arena : *std::pmr::get_default_resource();
    }
    /// Where the latest directory keeps a value of this many bytes: an entry that is dropped, or a
    /// value that is replaced, leaves no more than a short one in the arena.
    [[nodiscard]] std::pmr::memory_resource& getValueMemory(std::size_t bytes) noexcept {
        if (bytes <= longestValueInArena) {
            return *arena;
        }
        return arena->getSource();
    }

  private:
    static constexpr std::size_t longestValueInArena = 64;

    void detectFormat();
    void determineArchitectureEndianness() noexcept;
    void setupDefaultFields();
    void beginArena();
    void readThroughTiffHeader();
    void readTiffHeaderEndianFormat();
    void seekToDirectory(std::uint64_t position);
    void skipIfds();
    void skipOneIfd();
    [[nodiscard]] std::size_t readUnsigned(std::uint64_t width, unsigned long long* value);

    FileFormat fileFormat = FileFormat::JPEG;
    fl::filesystem::file_status fileStatus;
    FileStream stream;
    std::u16string filename;
    std::uint64_t headerOffset;
    std::uint64_t ifdsToSkip;
    std::uint64_t maxIfdsPerSet;
    std::uint64_t offsetSize = 0;
    bool swapBytes = false;
    std::uint64_t entrySize = 0;
    std::uint64_t baseOffset = 0;
    std::size_t nextArenaLength;
    std::shared_ptr<DirectoryArena> arena;  // outlives the tags that are read
    std::optional<IFDTree> ifdTree;
    std::uint64_t valueFieldPosition = 0;
    // Documented members. The first tells a debugger which mark the file has; swapBytes is taken
    // from the other two, which would change with a machine of another byte order.
    std::uint32_t fileByteOrder = 0;
    bool machineIsBigEndian = false;
    bool machineIsLittleEndian = true;
    std::uint64_t entryCountSize = 0;
    std::array<unsigned char, 4> headerSignature{};
    std::span<const char* const> defaultFields;
    std::set<std::string> issuedWarnings;
    PointerGuard pointerGuard;
    std::vector<unsigned char> spareEntryBuffer;
};

}  // namespace corvinex
