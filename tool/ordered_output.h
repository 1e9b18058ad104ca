#pragma once

#include <unistd.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <ostream>
#include <string>
#include <string_view>

#include "inspect/record/json_writer.h"
#include "tool/progress_line.h"

namespace tool {

/// Puts what several threads write into the order of their tasks, which count from 0. Each thread
/// collects the text of tasks that follow each other: its turn. A short text whose turn has not
/// come is left here for the thread that comes to it; only one that is long, or that is too far
/// ahead, waits. So memory grows neither with the number of tasks nor with the largest of them.
class OrderedOutput {
  public:
    /// Takes the progress line off while it writes.
    OrderedOutput(std::ostream& out, std::ostream& err, ProgressLine& progress)
        : out_(out), err_(err), progress_(progress) {}

    /// The place of tasks that one thread does one after the other.
    class Turn final : public corvinex::inspect::TextSink {
      public:
        /// Begins with the task of this number. Collects in the thread's own text, whose memory
        /// serves from one turn to the next.
        Turn(OrderedOutput& output, std::uint64_t number, std::string& text)
            : output_(output), first_(number), text_(text) {
            text_.clear();
        }

        /// Text of the task for the output.
        void write(std::string_view text) override;
        /// Forgets what of the task is not written yet: half a record is worse than none.
        void abandon() noexcept { text_.resize(start_); }
        /// Ends the task.
        void endTask() noexcept {
            ++count_;
            start_ = text_.size();
        }
        /// Whether the next task can be part of it. Not where there is much text already, which
        /// others may wait for.
        [[nodiscard]] bool hasRoom() const noexcept { return text_.size() < enough; }
        /// Hands over all that is left, with a message for the error output behind it. To be called
        /// once, also when a task failed.
        void finish(std::string message);

      private:
        static constexpr std::size_t enough = std::size_t{32} << 10U;
        static constexpr std::size_t mostKept = std::size_t{1} << 20U;

        OrderedOutput& output_;
        std::uint64_t first_;
        std::uint64_t count_ = 0;
        std::size_t start_ = 0;  ///< of the task's text
        std::string& text_;
    };

    /// Whether the output takes no more.
    [[nodiscard]] bool hasFailed() const noexcept { return hasFailed_; }

    /// Whether so much was left here that to go on further ahead would mean to wait.
    [[nodiscard]] bool isCrowded() const noexcept { return isCrowded_; }

  private:
    /// What a thread that is ahead of its turn has left.
    struct Left {
        std::uint64_t first = 0;
        std::uint64_t count = 0;  ///< of tasks; 0 for a free place
        std::string text;         ///< keeps its memory for the next one
        std::string message;
    };

    std::unique_lock<std::mutex> waitFor(std::uint64_t number);
    [[nodiscard]] bool hasRoomFor(std::uint64_t number, std::size_t size) const noexcept;
    [[nodiscard]] Left* findLeft(std::uint64_t first) noexcept;
    void write(std::string_view text);
    void endTurn(std::uint64_t count, std::string_view text, std::string_view message);
    void endTurnsLeft();
    void noteCrowd() noexcept;

    // Enough that nobody waits while one file takes longer than its neighbours.
    static constexpr std::size_t mostPlaces = 64;
    static constexpr std::size_t mostLeft = std::size_t{4} << 20U;
    static constexpr std::size_t mostMemoryKept = std::size_t{64} << 10U;  ///< by each place

    std::ostream& out_;
    std::ostream& err_;
    ProgressLine& progress_;
    const bool isOnTerminal_ = isatty(STDOUT_FILENO) != 0;
    // Looked at by all threads for each task, seldom changed.
    std::atomic<bool> hasFailed_{false};
    std::atomic<bool> isCrowded_{false};
    alignas(128) std::mutex mutex_;
    std::condition_variable turned_;
    std::uint64_t next_ = 0;  ///< the first task whose text is not written
    std::array<Left, mostPlaces> left_;
    std::size_t places_ = 0;  ///< that are taken
    std::size_t leftBytes_ = 0;
};

}  // namespace tool
