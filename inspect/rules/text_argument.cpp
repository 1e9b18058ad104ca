#include "inspect/rules/text_argument.h"

#include <string_view>

namespace corvinex::inspect {

std::string makeTextArgument(std::span<const unsigned char> bytes) {
    static constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : bytes) {
        if (byte >= ' ' && byte <= '~') {
            text += static_cast<char>(byte);
        } else {
            text.append("\\x").append(1, digits[byte / 16]).append(1, digits[byte % 16]);
        }
    }
    return text;
}

}  // namespace corvinex::inspect
