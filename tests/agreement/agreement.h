#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "corvinex/inspect.h"
#include "host/values/value.h"

namespace test {

/// What became of comparing results with the inspection of their files.
struct Agreement {
    std::size_t equal = 0;                     ///< values that are equal
    std::map<std::string, std::size_t> bends;  ///< values that the contract bends, by the kind
    std::vector<std::string> differences;      ///< what is wrong, at most a few lines
    std::size_t differing = 0;
};

/// Compares each value of a module's result with what the inspection holds of the same file.
void compareResult(const zxArray& output, const corvinex::inspect::File& file,
                   const std::string& name, Agreement& agreement);

}  // namespace test
