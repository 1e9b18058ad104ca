#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>

#include "host/loading/module.h"
#include "tests/damage/tiff_map.h"

namespace test {

/// Reads a file of these bytes, served from memory. Expects what holds for every file: an output or
/// an error, reports that docs/reports.md lists, no value and no stream left over, and an end
/// within the budget of reads; and the same from a file of the system with these bytes.
host::CallResult callOnDamaged(std::span<const unsigned char> bytes, std::size_t headerPosition);

/// What an entry became in a result; null when it is not there.
const zxArray* findEntry(const zxArray* output, const MapEntry& entry);

/// Counts how calls ended, for people who want to see figures.
class Outcomes {
  public:
    void count(const host::CallResult& result);
    /// Prints the counts.
    void print(const std::string& title) const;

  private:
    std::size_t calls_ = 0;
    std::map<std::string, std::size_t> ends_;
};

/// Every so many of the bytes that no directory or value holds are damaged: each one when the
/// environment variable CORVINEX_DAMAGE_STRIDE is 1, fewer by default under sanitizers and in
/// large files. The other bytes are damaged one and all.
std::size_t damageStride(std::size_t fileSize);

}  // namespace test
