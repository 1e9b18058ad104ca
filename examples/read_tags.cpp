// read_tags FILE: prints the tags of a file, of numbers the first.
#include <iostream>

#include "corvinex/inspect.h"

int main(int argc, char** argv) try {
    const auto file = corvinex::inspect::File::open(argc > 1 ? argv[1] : "");
    for (const auto& entry : file.entries()) {
        const auto text = entry.text();
        const auto value = entry.value();
        std::cout << entry.directory().path() << '.' << entry.name() << ": " << text.value_or("");
        const auto printFirst = [](const auto& elements) {
            if constexpr (requires { elements.find('\0'); }) {
                std::cout << elements.substr(0, elements.find('\0'));
            } else if constexpr (requires { +elements[0]; }) {
                std::cout << +elements[0];
            }
        };
        std::visit(printFirst, value && !text ? value->elements() : std::string_view());
        std::cout << '\n';
    }
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
