#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace test {

/// A file of the corpus, as its index has it.
struct CorpusFile {
    std::string name;  ///< relative to the corpus folder
    std::filesystem::path path;
    std::string kind;            ///< classic, big, jpeg or other
    std::string headerPosition;  ///< byte position of the TIFF header, -1 when there is none
    bool isSound;                ///< the index knows of no oddity
    std::string oddities;        ///< what it knows, parted by commas, or "-"
};

/// Whether the environment names a corpus folder that exists.
bool haveCorpus();

/// The files of the kinds given, read from INDEX.tsv.
std::vector<CorpusFile> corpusFiles(const std::vector<std::string>& kinds);

}  // namespace test
