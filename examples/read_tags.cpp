// read_tags FILE: prints the tags of a file, of numbers the first.
#include <exception>
#include <iostream>
#include <type_traits>

#include "corvinex/inspect.h"

namespace inspect = corvinex::inspect;

void printFirst(const auto& elements) {
    if constexpr (std::is_convertible_v<decltype(elements), std::string_view>) {
        std::cout << elements.substr(0, elements.find('\0'));
    } else if constexpr (std::is_arithmetic_v<std::decay_t<decltype(elements[0])>>) {
        std::cout << +elements[0] << (elements.size() > 1 ? " ..." : "");
    }
}

int main(int argc, char** argv) try {
    const inspect::File file = inspect::File::open(argc > 1 ? argv[1] : "");
    for (const inspect::Entry& entry : file.entries()) {
        std::cout << entry.directory().path() << '.' << entry.name() << ": ";
        if (const auto text = entry.text()) {
            std::cout << *text;
        } else if (const auto value = entry.value()) {
            std::visit([](const auto& elements) { printFirst(elements); }, value->elements());
        }
        std::cout << '\n';
    }
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
