// call_module MODULE FILE: calls the module as a host does, and prints the width of each directory.
#include <filesystem>
#include <iostream>

#include "corvinex/host/module.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: call_module MODULE FILE\n";
        return 2;
    }
    const host::Module module(argv[1]);
    // The last number limits the directories. A damaged chain of directories may come back on
    // itself: with 0, for no limit, the call would not return.
    const host::CallResult result =
        module.call(std::filesystem::path(argv[2]).u16string(), 0, 0, 1000);
    for (const host::Report& warning : result.warnings) {
        std::cerr << "warning: " << host::messageText(warning) << '\n';
    }
    if (!result.output) {
        std::cerr << "error: " << result.failure->message << '\n';
        return 1;
    }
    for (std::size_t i = 0; i < host::sizeOf(*result.output).rows; ++i) {
        std::cout << host::doublesOf(*host::fieldAt(*result.output, i, "Width"))[0] << '\n';
    }
}
