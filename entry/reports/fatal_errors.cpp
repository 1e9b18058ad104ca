#include "entry/reports/fatal_errors.h"

namespace corvinex {

std::u16string asciiToUtf16(std::string_view text) {
    return std::u16string(text.begin(), text.end());
}

}  // namespace corvinex
