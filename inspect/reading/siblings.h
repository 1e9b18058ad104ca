#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "corvinex/value.h"

namespace corvinex::inspect::reading {

/// The entries of one directory, seen from one of them: some values are read with the help of
/// others, such as a coordinate with its hemisphere. A number that stands more than once means its
/// first entry.
///
/// Readings ask for few numbers, but may do so for each entry of a large directory: an
/// implementation finds an entry in less than linear time, or finds it once.
class Siblings {
  public:
    virtual ~Siblings() = default;

    /// The value of the entry, or nothing: there is no such entry, its value is not in the file
    /// whole, or it has more than mostBytes bytes.
    [[nodiscard]] virtual std::optional<Value> find(std::uint16_t number,
                                                    std::size_t mostBytes) const = 0;
    /// How many elements the entry tells. Nothing is read for it.
    [[nodiscard]] virtual std::optional<std::uint64_t> count(std::uint16_t number) const = 0;

  protected:
    Siblings() = default;
    Siblings(const Siblings&) = default;
    Siblings(Siblings&&) = default;
    Siblings& operator=(const Siblings&) = default;
    Siblings& operator=(Siblings&&) = default;
};

/// Enough for one number, a pair of them or a short word.
inline constexpr std::size_t fewBytes = 64;

}  // namespace corvinex::inspect::reading
