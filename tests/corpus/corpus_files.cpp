#include "tests/corpus/corpus_files.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace test {

bool haveCorpus() {
    const char* folder = std::getenv("CORVINEX_CORPUS");
    return folder != nullptr && std::filesystem::is_directory(folder);
}

std::vector<CorpusFile> corpusFiles(const std::vector<std::string>& kinds) {
    const std::filesystem::path folder = std::getenv("CORVINEX_CORPUS");
    std::ifstream index(folder / "INDEX.tsv");
    std::string line;
    std::getline(index, line);  // column names
    std::vector<CorpusFile> files;
    while (std::getline(index, line)) {
        std::vector<std::string> columns{""};
        for (const char character : line) {
            if (character == '\t') {
                columns.emplace_back();
            } else {
                columns.back() += character;
            }
        }
        if (columns.size() < 13) {
            throw std::runtime_error("a short line in INDEX.tsv: " + line);
        }
        for (const std::string& kind : kinds) {
            if (columns[3] == kind) {
                files.push_back({columns[0], folder / columns[0], kind, columns[10],
                                 columns[12] == "-", columns[12]});
            }
        }
    }
    if (files.empty()) {
        throw std::runtime_error("INDEX.tsv names no files of these kinds");
    }
    return files;
}

}  // namespace test
