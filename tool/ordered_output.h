#pragma once

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
/// collects the text of its task and waits for its turn when that becomes large, so that memory
/// grows neither with the number of tasks nor with the largest of them.
class OrderedOutput {
  public:
    /// Nothing is written while the progress line stands on a terminal; null for none.
    OrderedOutput(std::ostream& out, std::ostream& err, ProgressLine* progress)
        : out_(out), err_(err), progress_(progress) {}

    /// The place of one task. Used by the thread that does it.
    class Turn final : public corvinex::inspect::TextSink {
      public:
        Turn(OrderedOutput& output, std::uint64_t number) : output_(output), number_(number) {}

        /// Text for the output.
        void write(std::string_view text) override;
        /// Forgets what is not written yet: half a record is worse than none.
        void abandon() noexcept { text_.clear(); }
        /// Writes all that is left, with a message for the error output behind it, and hands on to
        /// the next task. To be called once, also when the task failed.
        void finish(std::string_view message);

      private:
        static constexpr std::size_t mostKept = std::size_t{1} << 20U;

        OrderedOutput& output_;
        std::uint64_t number_;
        std::string text_;
    };

    /// Whether the output takes no more.
    [[nodiscard]] bool hasFailed();

  private:
    std::unique_lock<std::mutex> waitFor(std::uint64_t number);
    /// Both are called when it is the turn of the task whose text this is.
    void put(std::string_view text);
    void report(std::string_view message);

    std::ostream& out_;
    std::ostream& err_;
    ProgressLine* progress_;
    std::mutex mutex_;
    std::condition_variable turned_;
    std::uint64_t turn_ = 0;
};

}  // namespace tool
