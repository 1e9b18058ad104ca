#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "bench/totals.h"
#include "host/interface/array.h"

namespace bench {

/// Counts the fields of a result that came from entries of the file. The inputs of the benchmark
/// are made so that they can be told from the others: each main directory holds the tags that
/// become "Width" and "Height", and none of the tags for which the module adds a default.
class ResultCount {
  public:
    /// Counts a result, or the struct array of a set of directories.
    void add(const zxArray& directories);
    void print() const;

  private:
    void addFields(const zxArray& directories, std::size_t element,
                   std::span<const std::string> names);
    void addField(const std::string& name, const zxArray& value);
    void addBytes(const zxArray& value);

    Totals totals_;
    std::uint64_t elementBytes_ = 0;
};

}  // namespace bench
