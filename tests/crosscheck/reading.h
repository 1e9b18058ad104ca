#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "host/values/value.h"

// One form for what other software wrote or read and for what the module answers, so that the two
// can be compared.

namespace test {

enum class DirectoryKind { Main, Exif, Gps, Interop };

/// Nothing (never set), numbers or text. Several texts stand as one, parted by "; ".
using Reading = std::variant<std::monostate, std::vector<double>, std::string>;

/// The field that a tag becomes; empty for a tag without a name.
std::string fieldNameOf(DirectoryKind kind, std::uint16_t tag);

/// What the module answers for a tag: its field, or its record among the unknown tags.
Reading readingOf(const zxArray& structs, std::size_t element, DirectoryKind kind,
                  std::uint16_t tag);

/// What the module has to answer for a tag that holds these numbers: them, or their word.
Reading expectedReading(DirectoryKind kind, std::uint16_t tag, std::vector<double> numbers);

/// How many tags of an element have a value, the unknown ones included.
std::size_t valuesIn(const zxArray& structs, std::size_t element);

}  // namespace test
