#include "bench/arguments.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace bench {
namespace {

[[noreturn]] void refuse(const char* program, const std::string& why) {
    static_cast<void>(std::fprintf(stderr, "%s: %s\nusage: %s [--repeat N] FILE... | @LIST\n",
                                   program, why.c_str(), program));
    std::exit(2);
}

}  // namespace

Arguments::Arguments(int count, char** words, const std::vector<std::string_view>& options) {
    for (int i = 1; i < count; ++i) {
        const std::string word(words[i]);
        if (word == "--repeat" && i + 1 < count) {
            repeat_ = std::strtoul(words[++i], nullptr, 10);
        } else if (word.starts_with("--")) {
            if (std::find(options.begin(), options.end(), word) == options.end()) {
                refuse(words[0], "no option " + word);
            }
            given_.push_back(word);
        } else if (word.starts_with("@")) {
            addList(word.substr(1));
        } else {
            files_.push_back(word);
        }
    }
    if (files_.empty()) {
        refuse(words[0], "there is no file to read");
    }
}

bool Arguments::has(std::string_view option) const noexcept {
    return std::find(given_.begin(), given_.end(), option) != given_.end();
}

void Arguments::addList(const std::string& list) {
    std::ifstream names(list);
    const std::filesystem::path folder = std::filesystem::path(list).parent_path();
    for (std::string name; std::getline(names, name);) {
        files_.push_back((folder / name).string());
    }
}

}  // namespace bench
