#include "tool/process_locale.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdlib>
#include <new>

namespace tool {
namespace {

struct Category {
    int mask;
    const char* variable;
};

constexpr std::array categories{
    Category{LC_CTYPE_MASK, "LC_CTYPE"},
    Category{LC_TIME_MASK, "LC_TIME"},
    Category{LC_COLLATE_MASK, "LC_COLLATE"},
    Category{LC_NUMERIC_MASK, "LC_NUMERIC"},
    Category{LC_MONETARY_MASK, "LC_MONETARY"},
    Category{LC_MESSAGES_MASK, "LC_MESSAGES"},
    Category{LC_PAPER_MASK, "LC_PAPER"},
    Category{LC_NAME_MASK, "LC_NAME"},
    Category{LC_ADDRESS_MASK, "LC_ADDRESS"},
    Category{LC_TELEPHONE_MASK, "LC_TELEPHONE"},
    Category{LC_MEASUREMENT_MASK, "LC_MEASUREMENT"},
    Category{LC_IDENTIFICATION_MASK, "LC_IDENTIFICATION"},
};

/// The name of the locale that the environment has for a category.
const char* nameFor(const Category& category) {
    for (const char* const variable : std::array{"LC_ALL", category.variable, "LANG"}) {
        const char* const name = std::getenv(variable);
        if (name != nullptr && *name != '\0') {
            return name;
        }
    }
    return "C";
}

/// Whether any category of a locale can be read. The C library does not read again what it once
/// failed to read, so one category alone would not tell.
bool isThere(const char* name) {
    return std::any_of(categories.begin(), categories.end(), [name](const Category& category) {
        const locale_t found = ::newlocale(category.mask, name, nullptr);
        if (found != nullptr) {
            ::freelocale(found);
        }
        return found != nullptr;
    });
}

}  // namespace

void setProcessLocale() {
    if (std::setlocale(LC_ALL, "") != nullptr) {
        return;
    }
    // The error that the C library leaves behind is that of the last place where it looked.
    if (std::all_of(categories.begin(), categories.end(),
                    [](const Category& category) { return isThere(nameFor(category)); })) {
        throw std::bad_alloc();
    }
}

}  // namespace tool
