#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "corvinex/derived.h"
#include "corvinex/directory.h"
#include "corvinex/export.h"
#include "corvinex/finding.h"

namespace corvinex::inspect {

enum class Container : std::uint8_t { Jpeg, Tiff, BigTiff };
enum class ByteOrder : std::uint8_t { LittleEndian, BigEndian };

/// What became of reading a file.
enum class Status : std::uint8_t {
    Ok,          ///< read whole, at most notes
    Warnings,    ///< read whole, departs from the standard
    Damaged,     ///< something that the file tells could not be read as told; the rest is there
    NoMetadata,  ///< a sound JPEG without an EXIF block
    NotAnImage,  ///< neither JPEG nor TIFF
    Unreadable,  ///< could not be opened or read
};

struct Options {
    /// Where the TIFF header stands, in bytes from the start of the file. By default it is looked
    /// for: at the start, or in a JPEG in its EXIF block.
    std::optional<std::uint64_t> headerOffset;
};

/// What one file holds: its directories and entries, read when the file is opened, and their
/// values, read on demand.
///
/// Damage never raises: what cannot be read is missing, and findings() says so. Only a file that
/// cannot be opened or read raises std::system_error, and lack of memory std::bad_alloc. Opening
/// takes time in proportion to the directories' size and reads at most 65,536 + size / 4
/// directories, entries and pointer values.
///
/// A File may be used by one thread at a time, different ones by different threads. Directories,
/// entries and findings belong to it and stay where they are when it is moved.
class CORVINEX_API File {
  public:
    /// Opens a regular file by its name.
    [[nodiscard]] static File open(const std::filesystem::path& path, const Options& options = {});
    /// Reads the regular file behind a descriptor, which must stay open while the File lives and is
    /// not closed by it. The descriptor's own position is neither used nor changed.
    [[nodiscard]] static File fromDescriptor(int descriptor, const Options& options = {});
    /// Reads bytes in memory, which must live as long as the File.
    [[nodiscard]] static File fromBytes(std::span<const std::byte> bytes,
                                        const Options& options = {});
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    ~File();

    /// In bytes, when the file was opened.
    [[nodiscard]] std::uint64_t size() const noexcept;
    /// When it was last changed before it was opened, in seconds since 1970 (UTC). Nothing for
    /// bytes in memory.
    [[nodiscard]] std::optional<std::int64_t> modified() const noexcept;
    /// Nothing for what is no image.
    [[nodiscard]] std::optional<Container> container() const noexcept;
    /// The order that the TIFF header tells; nothing without a right one.
    [[nodiscard]] std::optional<ByteOrder> byteOrder() const noexcept;
    /// The position of the TIFF header, in bytes; nothing when none was found.
    [[nodiscard]] std::optional<std::uint64_t> headerOffset() const noexcept;
    /// In the order of the walk: the main chain; then for each of its directories what its pointers
    /// lead to, whole chains first.
    [[nodiscard]] std::span<const Directory> directories() const noexcept;
    /// All entries, directory by directory.
    [[nodiscard]] std::span<const Entry> entries() const noexcept;

    /// What is wrong with the file, by all rules. The first call looks everything over, reads the
    /// values that rules ask for, and takes time in proportion to the directories and to n log n of
    /// the values, strips and tiles; the list is kept. Raises std::system_error when the file
    /// cannot be read.
    [[nodiscard]] std::span<const Finding> findings() const;
    /// Follows from findings(): takes its time when it has not been called before, then time in
    /// proportion to the number of findings, and raises what it raises.
    [[nodiscard]] Status status() const;
    /// Facts of the file as a whole, such as width, height and pages; DerivedFact lists them. Made
    /// anew with each call, which looks through the directories in time n log n of their entries
    /// at most and reads only values of up to 4,096 bytes. Raises std::system_error when the file
    /// cannot be read.
    [[nodiscard]] std::vector<DerivedFact> derived() const;

    /// What the library's own parts read.
    [[nodiscard]] const FileContent& content() const noexcept { return *content_; }

  private:
    explicit File(std::unique_ptr<FileContent> content) noexcept;
    std::unique_ptr<FileContent> content_;
};

/// What a file is by its first bytes, and where its TIFF header stands.
struct HeaderLocation {
    std::optional<Container> container;   ///< nothing for what is no image
    std::optional<std::uint64_t> offset;  ///< in bytes; nothing when no header was found
};

/// Finds the header of a regular file as File::open does when it is told none, and reads no
/// directory. Takes time in proportion to what stands before a JPEG's image data. Raises
/// std::system_error when the file cannot be opened or read.
[[nodiscard]] CORVINEX_API HeaderLocation findHeader(const std::filesystem::path& path);

/// "JPEG", "TIFF" or "BigTIFF".
[[nodiscard]] CORVINEX_API std::string_view containerName(Container container) noexcept;
/// "little-endian" or "big-endian".
[[nodiscard]] CORVINEX_API std::string_view byteOrderName(ByteOrder order) noexcept;
/// "ok", "warnings", "damaged", "no-metadata", "not-an-image" or "unreadable".
[[nodiscard]] CORVINEX_API std::string_view statusName(Status status) noexcept;

}  // namespace corvinex::inspect
