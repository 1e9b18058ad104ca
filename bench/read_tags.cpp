// Reads files with the module as a host does: this program loads it, calls it on each file and
// destroys the result. It prints totals; the times are those of the calls and of the destruction.
//   read_tags [--no-count] [--repeat N] FILE... | @LIST
// It counts by a walk over each result, which those times leave out. The time of the whole process
// has it in unless --no-count leaves it out.

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

#include "bench/arguments.h"
#include "bench/cpu_clock.h"
#include "bench/result_count.h"
#include "corvinex/file.h"
#include "host/loading/module.h"
#include "host/platform/unicode.h"

namespace {

// No input has as many directories, so none is left out.
constexpr double limit = 4294967295.0;

bool isNamedAsJpeg(const std::string& file) {
    return file.ends_with(".jpg");
}

double headerOffsetOf(const std::string& file) {
    if (!isNamedAsJpeg(file)) {
        return 0;
    }
    return static_cast<double>(corvinex::inspect::findHeader(file).offset.value_or(0));
}

class Reading {
  public:
    explicit Reading(bool counts) : counts_(counts) {}

    void readFile(const std::string& file) {
        const std::u16string name = host::utf16FromUtf8(file).value();
        const double headerOffset = headerOffsetOf(file);
        auto start = bench::Seconds::now();
        host::CallResult result = call(name, headerOffset);
        if (!result.output) {
            throw std::runtime_error(file + ": " + result.failure->message);
        }
        warnings_ += result.warnings.size();
        if (counts_) {
            spent_.addSince(start);
            count_.add(*result.output);
            start = bench::Seconds::now();
        }
        destroy(result);
        spent_.addSince(start);
    }

    void print() const {
        if (counts_) {
            count_.print();
        }
        std::printf("warnings %zu\nwall_seconds %.6f\ncpu_seconds %.6f\n", warnings_, spent_.wall,
                    spent_.cpu);
    }

  private:
    // These are functions of their own so that a profiler can be told to look at them alone.
    [[gnu::noinline]] host::CallResult call(const std::u16string& name, double headerOffset) {
        return module_.call(name, headerOffset, 0, limit);
    }
    [[gnu::noinline]] static void destroy(host::CallResult& result) { result.output.reset(); }

    const host::Module module_{CORVINEX_MODULE};
    bool counts_;
    bench::ResultCount count_;
    bench::Seconds spent_;
    std::size_t warnings_ = 0;
};

}  // namespace

int main(int count, char** words) {
    const bench::Arguments arguments(count, words, {"--no-count"});
    try {
        Reading reading(!arguments.has("--no-count"));
        arguments.forEachFile([&reading](const std::string& file) { reading.readFile(file); });
        reading.print();
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "read_tags: %s\n", error.what()));
        return 1;
    }
    return 0;
}
