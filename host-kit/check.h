#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "host-kit/inspector.h"
#include "host/interface/plugin.h"

namespace hostkit {

/// What a check works with.
struct Context {
    Inspector& host;
    std::filesystem::path folder;            ///< for files of its own, empty at first
    decltype(&zekFunction) entry = nullptr;  ///< of the module, null when none is given
};

/// One thing that the module relies on. It is run in a process of its own, so it may leave behind
/// what it likes, and a host that ends the process spoils one check only.
struct Check {
    const char* name;
    const char* operation;
    const char* sentence;  ///< what must be so
    bool (*holds)(Context& context);
};

std::span<const Check> arrayChecks();
std::span<const Check> textChecks();
std::span<const Check> containerChecks();
std::span<const Check> reportChecks();
std::span<const Check> fileChecks();
std::span<const Check> textServiceChecks();
/// Those that need a module.
std::span<const Check> moduleChecks();

// What several groups of checks use.

using Owner = matrix::unique_zxArray;

/// A value of a size, made by one of the operations that take dimensions.
Owner makeDoubles(std::size_t rows, std::size_t columns);
Owner makeCells(std::size_t rows, std::size_t columns);
Owner makeStructs(std::size_t rows, std::size_t columns, std::vector<const char*> names);
Owner makeNumber(double number);

/// Whether a value is of this class and size.
bool is(const Inspector& host, const zxArray* value, ValueClass wanted, Size size);
/// Whether a value is the 1 x 1 double that holds number.
bool isNumber(const Inspector& host, const zxArray* value, double number);
/// Whether nothing is there: null or an empty double.
bool isUnset(const Inspector& host, const zxArray* value);
/// Whether a value is the char row of these units.
bool isText(const Inspector& host, const zxArray* value, std::u16string_view text);

/// Whether the call raises anything.
template <class Call>
bool raises(Call&& call) {
    try {
        call();
    } catch (...) {
        return true;
    }
    return false;
}

}  // namespace hostkit
