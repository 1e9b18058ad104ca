#include "packaging/manual/option_values.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace manual {
namespace {

/// Placeholders that stand for a file in a command line.
constexpr std::array<std::string_view, 5> fileNames{"FILE", "FILE2", "PATH", "OUT", "CATALOGUE"};

bool isFileName(std::string_view placeholder) {
    return std::find(fileNames.begin(), fileNames.end(), placeholder) != fileNames.end();
}

}  // namespace

Offer offerFor(const tool::OptionRow& option) {
    if (option.kind == tool::ValueKind::None) {
        return Offer::NoValue;
    }
    if (option.kind == tool::ValueKind::Word) {
        return Offer::Words;
    }
    return isFileName(option.placeholder) ? Offer::Files : Offer::Anything;
}

std::string wordsOf(const tool::OptionRow& option, const std::string& separator) {
    std::string words;
    for (const char character : option.placeholder) {
        words += character == '|' ? separator : std::string(1, character);
    }
    return words;
}

bool takesFiles(const tool::CommandRow& command) {
    const std::string_view operands = command.operand;
    return isFileName(operands.substr(operands.find_last_of(' ') + 1));
}

}  // namespace manual
