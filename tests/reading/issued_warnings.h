#pragma once

#include <string>
#include <vector>

namespace test {

/// The identifiers of the warnings that were issued, in order.
std::vector<std::string>& issuedWarnings();

}  // namespace test
