#include <unistd.h>

#include <cstdlib>

// Stands in a folder under the name of a library that the tool needs. Whoever loads it comes to an
// end that nobody takes for another.

namespace {

constexpr char text[] = "the false library was loaded\n";

[[gnu::constructor]] void tellAndEnd() {
    static_cast<void>(::write(STDERR_FILENO, text, sizeof text - 1) == 0);
    std::_Exit(99);
}

}  // namespace
