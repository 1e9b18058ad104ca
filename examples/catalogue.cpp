// catalogue FOLDER: prints a table of the images below a folder, as comma-separated values.
#include <filesystem>
#include <iomanip>
#include <iostream>

#include "corvinex/inspect.h"

void printRow(const std::filesystem::path& path) {
    const auto file = corvinex::inspect::File::open(path);
    if (!file.container()) {
        return;
    }
    std::cout << std::quoted(path.string(), '"', '"') << ',' << statusName(file.status());
    for (const char* const name : {"width", "height", "pages", "model", "taken"}) {
        std::cout << ',';
        for (const auto& fact : file.derived()) {
            const auto* const number = std::get_if<std::uint64_t>(&fact.value);
            const auto* const text = std::get_if<std::string>(&fact.value);
            if (fact.name == name && number != nullptr) {
                std::cout << *number;
            } else if (fact.name == name && text != nullptr) {
                std::cout << std::quoted(*text, '"', '"');
            }
        }
    }
    std::cout << '\n';
}

int main(int argc, char** argv) try {
    std::cout << "file,status,width,height,pages,model,taken\n";
    for (const auto& found :
         std::filesystem::recursive_directory_iterator(argc > 1 ? argv[1] : ".")) {
        if (found.is_regular_file()) {
            printRow(found.path());
        }
    }
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
