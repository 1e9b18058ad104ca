// Reads every value of every directory through the interface of the inspection.
//   walk_inspect [--repeat N] FILE... | @LIST

#include <cstddef>
#include <cstdio>
#include <exception>
#include <functional>
#include <numeric>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "bench/arguments.h"
#include "bench/totals.h"
#include "corvinex/inspect.h"

namespace {

using corvinex::inspect::BasicRational;
using corvinex::inspect::Entry;
using corvinex::inspect::File;

/// Adds all elements of values, so that none of their bytes goes unread.
class Sum {
  public:
    ~Sum() { bench::keep(&sum_); }
    Sum() = default;
    Sum(const Sum&) = delete;
    Sum& operator=(const Sum&) = delete;

    void operator()(std::string_view characters) {
        sum_ += static_cast<double>(
            std::accumulate(characters.begin(), characters.end(), std::uint64_t{0}));
    }
    template <class Element>
    void operator()(std::span<const Element> elements) {
        for (const Element& element : elements) {
            sum_ += numberOf(element);
        }
    }

  private:
    template <class Number>
    static double numberOf(Number number) {
        return static_cast<double>(number);
    }
    template <class Number>
    static double numberOf(const BasicRational<Number>& rational) {
        return static_cast<double>(rational.numerator) / static_cast<double>(rational.denominator);
    }

    double sum_ = 0;
};

void readFile(const std::string& name, bench::Totals& totals, Sum& sum) {
    const File file = File::open(name);
    totals.directories += file.directories().size();
    for (const Entry& entry : file.entries()) {
        const auto value = entry.value();
        if (value && !entry.isPointer()) {
            ++totals.values;
            std::visit(std::ref(sum), value->elements());
        }
    }
}

}  // namespace

int main(int count, char** words) {
    const bench::Arguments arguments(count, words);
    bench::Totals totals;
    Sum sum;
    try {
        arguments.forEachFile([&](const std::string& file) { readFile(file, totals, sum); });
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "walk_inspect: %s\n", error.what()));
        return 1;
    }
    totals.print();
    return 0;
}
