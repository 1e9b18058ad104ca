#pragma once

#include <unistd.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <ostream>
#include <string>
#include <string_view>

#include "inspect/record/json_writer.h"
#include "tool/progress_line.h"

namespace tool {

/// Puts what several threads write into the order in which they took their work. Each thread
/// collects the text of its task. A short text whose turn has not come is left here for the thread
/// that comes to it; only one that is long, or that is too far ahead, waits. So memory grows
/// neither with the number of tasks nor with the largest of them.
class OrderedOutput {
  public:
    /// Takes the progress line off while it writes.
    OrderedOutput(std::ostream& out, std::ostream& err, ProgressLine& progress)
        : out_(out), err_(err), progress_(progress) {}

    /// The place of one task. Used by the thread that does it.
    class Turn final : public corvinex::inspect::TextSink {
      public:
        /// Collects in the thread's own text, whose memory serves from one task to the next.
        Turn(OrderedOutput& output, std::uint64_t number, std::string& text)
            : output_(output), number_(number), text_(text) {
            text_.clear();
        }

        /// Text for the output.
        void write(std::string_view text) override;
        /// Forgets what is not written yet: half a record is worse than none.
        void abandon() noexcept { text_.clear(); }
        /// Hands over all that is left, with a message for the error output behind it. To be called
        /// once, also when the task failed.
        void finish(std::string message);

      private:
        static constexpr std::size_t mostKept = std::size_t{1} << 20U;

        OrderedOutput& output_;
        std::uint64_t number_;
        std::string& text_;
    };

    /// Whether the output takes no more.
    [[nodiscard]] bool hasFailed() const noexcept { return hasFailed_; }

  private:
    /// What a task that is ahead of its turn has left.
    struct Left {
        bool isThere = false;
        std::string text;  ///< keeps its memory for the next one
        std::string message;
    };

    std::unique_lock<std::mutex> waitFor(std::uint64_t number);
    [[nodiscard]] bool hasRoomFor(std::uint64_t number, std::size_t size) const noexcept;
    void write(std::string_view text);
    void endTurn(std::string_view text, std::string_view message);
    void endTurnsLeft();

    // Enough that nobody waits while one file takes longer than its neighbours.
    static constexpr std::size_t mostAhead = 64;
    static constexpr std::size_t mostLeft = std::size_t{4} << 20U;
    static constexpr std::size_t mostMemoryKept = std::size_t{64} << 10U;  ///< by each that is left

    std::ostream& out_;
    std::ostream& err_;
    ProgressLine& progress_;
    std::mutex mutex_;
    std::condition_variable turned_;
    std::uint64_t turn_ = 0;
    std::array<Left, mostAhead> left_;  ///< by number, modulo its size
    std::size_t leftBytes_ = 0;
    std::atomic<bool> hasFailed_{false};
    const bool isOnTerminal_ = isatty(STDOUT_FILENO) != 0;
};

}  // namespace tool
