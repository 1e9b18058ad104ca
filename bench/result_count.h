#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "bench/totals.h"
#include "host/interface/array.h"

namespace bench {

/// Counts what the entries of a file became in a result. The inputs of the benchmark are made so
/// that this can be told: each main directory holds the tags behind "Width" and "Height", and none
/// of those for which a default is made in them.
class ResultCount {
  public:
    /// A result, or the struct array of a set of directories.
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
