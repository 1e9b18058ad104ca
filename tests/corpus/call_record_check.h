#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

namespace test {

using Json = nlohmann::ordered_json;

class MalformedRecord : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Parses a call record and checks that it is what it says: every value's data fits its size, class
/// and fields. Raises MalformedRecord, or what the JSON library raises.
Json parseCallRecord(const std::string& text);

}  // namespace test
