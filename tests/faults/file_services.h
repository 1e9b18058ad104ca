#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

// A double in front of the host's file services: it passes every call on, unless a test wants it to
// fail. This program's own definitions stand before those of the host's library and of the C
// library, also for them and for the module.

namespace test {

enum class FileOperation { Exists, Status, Open, Seek, Tell, Read };

inline constexpr FileOperation allFileOperations[] = {FileOperation::Exists, FileOperation::Status,
                                                      FileOperation::Open,   FileOperation::Seek,
                                                      FileOperation::Tell,   FileOperation::Read};

/// One call of the file services, or of the stream that they open.
struct FileCall {
    FileOperation operation;
    std::uint64_t position;  ///< Seek: where to; Read: where from
    std::size_t size;        ///< Read: how many bytes are wanted
};

/// What becomes of a call.
struct FileEffect {
    enum Kind {
        Passes,
        Fails,        ///< EIO; a file that is not there for Exists and Status
        Interrupted,  ///< EINTR; for Exists and Status the host raises
        Short,        ///< Read: at most limit bytes; Status: a size smaller by one byte
        Told,         ///< Status: a size of limit bytes, whatever the file holds
    };
    Kind kind = Passes;
    std::size_t limit = 0;
};

/// How the stream reads on: byte by byte, in small pieces, or as much as a file's stream does; or
/// it is the host's own, and the calls of the C library on it are what fails.
enum class Buffering { None, Small, Full, Own };

/// Asks judge about each file call while it lives, and tells of each stream that is closed; one of
/// the host's own is closed untold.
class ScopedFileServices {
  public:
    using Judge = std::function<FileEffect(const FileCall&)>;

    ScopedFileServices(Buffering buffering, Judge judge, std::function<void()> onClose = nullptr);
    ~ScopedFileServices();
    ScopedFileServices(const ScopedFileServices&) = delete;
    ScopedFileServices& operator=(const ScopedFileServices&) = delete;

    /// Streams that are open at this moment.
    [[nodiscard]] static std::size_t openStreams() noexcept;
};

}  // namespace test
