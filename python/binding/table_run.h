#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <list>
#include <mutex>
#include <thread>
#include <vector>

#include "python/binding/table_rows.h"
#include "tool/path_list.h"
#include "tool/shared_paths.h"

namespace python {

/// Reads files into a table with several threads. Makes no Python object.
class TableRun {
  public:
    TableRun(const TablePlan& plan, const tool::PathOptions& paths, unsigned threads);
    /// Ends the threads with the files that they are reading.
    ~TableRun();
    TableRun(const TableRun&) = delete;
    TableRun& operator=(const TableRun&) = delete;

    /// Whether all threads have ended, now or within this time.
    bool waitFor(std::chrono::milliseconds time);
    /// Raises what kept a thread from its work. When all have ended.
    void raiseFailure();

    /// Where a row is: by one thread, at a place.
    struct Place {
        const TableRows* rows;
        std::size_t row;
    };
    /// All rows in the order of the files. When all threads have ended.
    [[nodiscard]] std::vector<Place> places() const;

  private:
    void work(TableRows& rows, std::size_t thread);
    static void read(TableRows& rows, const tool::SharedPaths::Taken& taken);

    tool::SharedPaths paths_;
    std::list<TableRows> rows_;  ///< one for each thread
    std::mutex mutex_;
    std::condition_variable ended_;
    std::size_t running_ = 0;
    std::vector<std::jthread> threads_;
};

}  // namespace python
