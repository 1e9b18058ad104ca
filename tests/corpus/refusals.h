#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "tests/corpus/call_record_check.h"
#include "tests/corpus/corpus_files.h"

namespace test {

/// Whether what the index says of a file, or the file itself, explains the error of its record. A
/// file that was read needs no explanation.
bool isExplained(const CorpusFile& file, const Json& record);

/// How the files of the corpus end, counted by kind of file, for people who want to see figures.
class OutcomeTable {
  public:
    void count(const CorpusFile& file, const Json& record);
    void print() const;

  private:
    std::map<std::string, std::size_t> rows_;
};

}  // namespace test
