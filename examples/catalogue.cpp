// catalogue FOLDER: prints a table of the images below a folder, as comma-separated values.
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <string>
#include <system_error>
#include <variant>

#include "corvinex/inspect.h"

namespace inspect = corvinex::inspect;

void printCell(const inspect::DerivedFact& fact) {
    if (const auto* number = std::get_if<std::uint64_t>(&fact.value)) {
        std::cout << *number;
    } else if (const auto* text = std::get_if<std::string>(&fact.value)) {
        std::cout << std::quoted(*text, '"', '"');
    }
}

void printRow(const std::filesystem::path& path) {
    const inspect::File file = inspect::File::open(path);
    if (file.status() == inspect::Status::NotAnImage) {
        return;
    }
    std::cout << std::quoted(path.string(), '"', '"') << ',' << inspect::statusName(file.status());
    for (const char* const name : {"width", "height", "pages", "model", "taken"}) {
        std::cout << ',';
        for (const inspect::DerivedFact& fact : file.derived()) {
            if (fact.name == name) {
                printCell(fact);
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
} catch (const std::system_error& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
