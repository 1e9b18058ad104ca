#include <optional>
#include <string>
#include <vector>

#include "corvinex/directory.h"
#include "corvinex/entry.h"
#include "corvinex/file.h"

// What entries, directories and files mean to a person.

namespace corvinex::inspect {

std::optional<std::string> Entry::text() const {
    const std::optional<Value> read = value();
    return read ? text(*read) : std::nullopt;
}

std::optional<std::string> Entry::text(const Value& /*value*/) const {
    return std::nullopt;
}

std::optional<std::vector<std::string>> Entry::words(const Value& /*value*/) const {
    return std::nullopt;
}

std::vector<DerivedFact> Directory::derived() const {
    return {};
}

std::vector<DerivedFact> File::derived() const {
    return {};
}

}  // namespace corvinex::inspect
