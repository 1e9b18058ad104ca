// make-manual FOLDER VERSION DATE: writes the tool's manual pages and its completion for three
// shells.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "packaging/manual/completion.h"
#include "packaging/manual/manual_page.h"

namespace {

std::ofstream opened(const std::filesystem::path& path) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file;
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file.open(path);
    return file;
}

void writeAll(const std::filesystem::path& folder, const manual::Edition& edition) {
    std::ofstream page = opened(folder / "man/corvinex.1");
    manual::printPage(page, edition);
    for (const tool::CommandRow& command : tool::allCommands()) {
        page = opened(folder / "man" / ("corvinex-" + std::string(command.name) + ".1"));
        manual::printPage(page, edition, command);
    }
    std::ofstream bash = opened(folder / "bash/corvinex");
    manual::printBashCompletion(bash);
    std::ofstream zsh = opened(folder / "zsh/_corvinex");
    manual::printZshCompletion(zsh);
    std::ofstream fish = opened(folder / "fish/corvinex.fish");
    manual::printFishCompletion(fish);
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 4) {
        std::cerr << "usage: make-manual FOLDER VERSION DATE\n";
        return 2;
    }
    writeAll(argv[1], {argv[2], argv[3]});
} catch (const std::exception& error) {
    std::cerr << "make-manual: " << error.what() << '\n';
    return 1;
}
