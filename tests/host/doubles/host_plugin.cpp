#include <exception>
#include <iostream>

#include "host/loading/module.h"

// A plug-in of another program that is a host itself.

extern "C" [[gnu::visibility("default")]] int loadModule(const char* path) {
    try {
        const host::Module module(path);
        const host::CallResult result = module.call(u"/nowhere/image.tif", 0, 0, 1);
        const bool isAnswer = result.failure && result.failure->report &&
                              result.failure->report->id == "quorra:corvinex:statFailure";
        return isAnswer ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
