#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include "tool/catalogue/rows.h"

namespace tool {

/// Hands blocks of rows from several readers to one writer, in the order of their files, whatever
/// the order in which the readers are done. Readers that are far ahead wait, so that memory stays
/// bounded.
class RowQueue {
  public:
    /// Adds a block of the file with this number. Each number from 0 on has to come, with a last
    /// block or by skip(). After stop() it does nothing.
    void put(std::uint64_t number, RowBlock&& block);
    /// Tells that a file has no rows, or no more.
    void skip(std::uint64_t number);

    /// Tells that a reader begins, and that it has come to its end.
    void enter();
    void leave();

    /// The next block. Nothing when all readers have left and all is handed over, or after stop().
    [[nodiscard]] std::optional<RowBlock> take();

    /// Takes back a block that is written, for a reader: to release its memory in this thread would
    /// hold the readers up at the locks of the heap.
    void reuse(RowBlock&& block);
    /// A block without rows, with memory if there is one.
    [[nodiscard]] RowBlock spare();

    /// Throws away what is there, and lets everybody go.
    void stop();

  private:
    /// What waits of one file.
    struct Waiting {
        std::deque<RowBlock> blocks;
        bool isWhole = false;
    };

    /// With so many files and bytes ahead at most.
    [[nodiscard]] bool mayPut(std::uint64_t number, std::uint64_t files, std::size_t bytes) const;
    void advance();
    [[nodiscard]] bool hasNext() const;
    [[nodiscard]] bool isWorthWaking() const noexcept;
    void wakeWriter();
    void takeSeveral();

    std::mutex mutex_;
    std::condition_variable filled_;
    std::condition_variable taken_;
    std::map<std::uint64_t, Waiting> waiting_;
    std::uint64_t next_ = 0;  ///< the file whose blocks are handed over
    std::size_t bytes_ = 0;
    unsigned readers_ = 0;
    unsigned waitingReaders_ = 0;
    std::atomic<bool> isStopped_{false};
    std::vector<RowBlock> spares_;
    std::vector<RowBlock> used_;       ///< by the writer, who alone touches them
    std::deque<RowBlock> handedOver_;  ///< to the writer, who alone touches them
};

}  // namespace tool
