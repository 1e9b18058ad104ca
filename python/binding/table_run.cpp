#include "python/binding/table_run.h"

#include <algorithm>
#include <exception>
#include <new>
#include <system_error>
#include <utility>

#include "python/binding/throwing.h"
#include "tool/inspected_file.h"

namespace python {
namespace {

/// What a thread takes from the list at once where files are read quickly.
constexpr std::size_t namesAtOnce = 16;

/// Raised in the threads of a run that is given up.
struct GivenUp : std::exception {};

}  // namespace

TableRun::TableRun(const TablePlan& plan, const tool::PathOptions& paths, unsigned threads)
    : paths_(paths, threads, namesAtOnce) {
    for (unsigned number = 0; number < threads; ++number) {
        TableRows& rows = rows_.emplace_back(plan);
        const std::lock_guard lock(mutex_);
        try {
            threads_.emplace_back([this, &rows, number] { work(rows, number); });
            ++running_;
        } catch (const std::system_error& error) {
            if (threads_.empty() && error.code() == std::errc::resource_unavailable_try_again) {
                throw std::bad_alloc();  // what the system lacks is a stack
            }
            if (threads_.empty()) {
                throw;
            }
            // The threads that there are do it all.
            return;
        }
    }
}

TableRun::~TableRun() {
    paths_.stop(std::make_exception_ptr(GivenUp()));
}

void TableRun::work(TableRows& rows, std::size_t thread) {
    prepareToThrow();
    while (const auto taken = paths_.take(thread)) {
        try {
            read(rows, *taken);
        } catch (const std::exception&) {
            paths_.stop(std::current_exception());
        }
    }
    const std::lock_guard lock(mutex_);
    --running_;
    ended_.notify_all();
}

void TableRun::read(TableRows& rows, const tool::SharedPaths::Taken& taken) {
    const tool::InspectedFile file(taken.path.name, {});
    if (taken.path.isAsked || file.isImage()) {
        rows.add(file, taken.number);
    }
}

bool TableRun::waitFor(std::chrono::milliseconds time) {
    std::unique_lock lock(mutex_);
    return ended_.wait_for(lock, time, [this] { return running_ == 0; });
}

void TableRun::raiseFailure() {
    paths_.raiseFailure();
}

std::vector<TableRun::Place> TableRun::places() const {
    std::vector<std::pair<const TableRows*, TableRows::Extent>> files;
    std::size_t count = 0;
    for (const TableRows& rows : rows_) {
        for (const TableRows::Extent& extent : rows.extents()) {
            files.emplace_back(&rows, extent);
            count += extent.count;
        }
    }
    std::ranges::sort(files, {}, [](const auto& file) { return file.second.number; });
    std::vector<Place> places;
    places.reserve(count);
    for (const auto& [rows, extent] : files) {
        for (std::size_t row = 0; row < extent.count; ++row) {
            places.push_back({rows, extent.first + row});
        }
    }
    return places;
}

}  // namespace python
