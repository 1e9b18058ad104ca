#include "tests/faults/value_comparison.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>

#include "host/values/value.h"

namespace test {

namespace {

bool isSameNumber(double left, double right) {
    return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

bool areSameCells(const zxArray& left, const zxArray& right) {
    for (std::size_t i = 0; i < host::elementCountOf(left); ++i) {
        if (!isSameValue(host::cellAt(left, i), host::cellAt(right, i))) {
            return false;
        }
    }
    return true;
}

bool areSameStructs(const zxArray& left, const zxArray& right) {
    const auto names = host::fieldNamesOf(left);
    if (!std::ranges::equal(names, host::fieldNamesOf(right))) {
        return false;
    }
    for (std::size_t i = 0; i < host::elementCountOf(left); ++i) {
        for (std::size_t field = 0; field < names.size(); ++field) {
            if (!isSameValue(host::fieldAt(left, i, field), host::fieldAt(right, i, field))) {
                return false;
            }
        }
    }
    return true;
}

const zxArray* fieldOrNull(const zxArray& structs, std::size_t element, const std::string& name) {
    const auto names = host::fieldNamesOf(structs);
    return std::ranges::find(names, name) == names.end() ? nullptr
                                                         : host::fieldAt(structs, element, name);
}

/// Whether every field of a directory has the same value on the right.
bool isWithin(const zxArray& left, const zxArray& right, std::size_t directory) {
    return std::ranges::all_of(host::fieldNamesOf(left), [&](const std::string& name) {
        return isSameValue(host::fieldAt(left, directory, name),
                           fieldOrNull(right, directory, name));
    });
}

}  // namespace

bool isSameValue(const zxArray* left, const zxArray* right) {
    if (left == nullptr || right == nullptr) {
        return left == right;
    }
    const host::ValueClass valueClass = host::classOf(*left);
    if (valueClass != host::classOf(*right) || host::sizeOf(*left) != host::sizeOf(*right)) {
        return false;
    }
    switch (valueClass) {
        case host::ValueClass::Double:
            return std::ranges::equal(host::doublesOf(*left), host::doublesOf(*right),
                                      isSameNumber);
        case host::ValueClass::Uint8:
            return std::ranges::equal(host::bytesOf(*left), host::bytesOf(*right));
        case host::ValueClass::Cell:
            return areSameCells(*left, *right);
        case host::ValueClass::Struct:
            return areSameStructs(*left, *right);
        default:
            return host::textOf(*left) == host::textOf(*right);
    }
}

std::size_t directoriesOf(const zxArray& result) {
    return host::classOf(result) == host::ValueClass::Struct ? host::elementCountOf(result) : 0;
}

bool isSameDirectory(const zxArray& left, const zxArray& right, std::size_t directory) {
    return isWithin(left, right, directory) && isWithin(right, left, directory);
}

}  // namespace test
