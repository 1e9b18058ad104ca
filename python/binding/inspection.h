#pragma once

#include <pybind11/pybind11.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "corvinex/entry.h"
#include "corvinex/file.h"
#include "inspect/record/record.h"
#include "python/binding/fork_safe_mutex.h"
#include "python/binding/without_gil.h"
#include "tool/file_descriptor.h"

namespace python {

/// The bytes of a Python object, which can neither move nor shrink while they are held. Made and
/// destroyed with the interpreter's lock.
class HeldBuffer {
  public:
    HeldBuffer() = default;
    /// Raises BufferError for memory that is not contiguous, TypeError for an object without.
    explicit HeldBuffer(pybind11::handle object);
    HeldBuffer(HeldBuffer&& other) noexcept : view_(std::exchange(other.view_, std::nullopt)) {}
    HeldBuffer& operator=(HeldBuffer&& other) noexcept {
        std::swap(view_, other.view_);
        return *this;
    }
    ~HeldBuffer();

    [[nodiscard]] std::span<const std::byte> bytes() const noexcept;

  private:
    std::optional<Py_buffer> view_;
};

/// Raised by what is asked of a file that was closed.
[[noreturn]] void refuseClosed();
/// Raises OSError, or the class of it that belongs to the error's number.
[[noreturn]] void raiseSystemError(const std::system_error& error,
                                   const std::optional<std::string>& name);

/// A file as Python has it open. Any number of threads may ask at once.
///
/// Two locks guard it, the interpreter's and its own:
///
/// - Directories and entries do not change after opening. The interpreter's lock is enough for what
///   they hold, numbers that lie in an entry included.
/// - Other values, findings, facts and records are read through buffers that belong to the file,
///   with its own lock. No thread waits for that one while it has the interpreter's, so that the
///   two cannot lock each other out. A process is forked while no thread has it.
/// - close() has both.
class Inspection {
  public:
    /// What is inspected: a file by its name, one that is open, or bytes.
    struct Input {
        std::optional<std::string> name;  ///< as the system has it; nothing for bytes without one
        tool::FileDescriptor descriptor;
        HeldBuffer buffer;
        bool isBytes = false;
    };

    Inspection(Input input, const corvinex::inspect::Options& options,
               const std::vector<std::string>& tags);
    ~Inspection();
    Inspection(const Inspection&) = delete;
    Inspection& operator=(const Inspection&) = delete;

    /// The file for what does not change after opening, as long as the interpreter's lock is held.
    /// Raises ValueError when it is closed.
    [[nodiscard]] const corvinex::inspect::File& file() const {
        if (!file_) {
            refuseClosed();
        }
        return *file_;
    }
    [[nodiscard]] bool isClosed() const noexcept { return !file_; }
    [[nodiscard]] const std::optional<std::string>& name() const noexcept { return input_.name; }
    [[nodiscard]] const corvinex::inspect::RecordOptions& options() const noexcept {
        return options_;
    }
    /// Whether some tags only were asked for.
    [[nodiscard]] bool isSelective() const noexcept { return isSelective_; }
    /// What its record says of it beside what it holds.
    [[nodiscard]] corvinex::inspect::FileFacts facts() const;

    /// Has something read without the interpreter's lock. It must make no Python object.
    template <class Read>
    [[nodiscard]] auto read(Read task) const {
        std::optional<decltype(task(*file_))> result;
        try {
            withoutGil([&] {
                const std::lock_guard lock(mutex_);
                result = task(checked());
            });
        } catch (const Closed&) {
            refuseClosed();
        } catch (const std::system_error& error) {
            raiseSystemError(error, input_.name);
        }
        return *std::move(result);
    }
    /// The same, but with the interpreter's lock where nobody else is reading and a look at the
    /// file tells that the task is brief.
    template <class Look, class Read>
    [[nodiscard]] auto readBriefly(Look isBrief, Read task) const {
        std::unique_lock lock(mutex_, std::try_to_lock);
        if (!lock || !isBrief(file())) {
            lock = {};
            return read(task);
        }
        try {
            return task(file());
        } catch (const std::system_error& error) {
            // What is raised is a Python object, and other Python code may run while it is made.
            lock.unlock();
            raiseSystemError(error, input_.name);
        }
    }

    /// Lets go of the file and its bytes. Waits for threads that are reading.
    void close();

  private:
    struct Closed : std::exception {};

    [[nodiscard]] const corvinex::inspect::File& checked() const {
        if (!file_) {
            throw Closed();
        }
        return *file_;
    }

    Input input_;
    corvinex::inspect::RecordOptions options_;
    bool isSelective_;
    mutable ForkSafeMutex mutex_;
    std::optional<corvinex::inspect::File> file_;
};

}  // namespace python
