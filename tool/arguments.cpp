#include "tool/arguments.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

#include "tool/memory_limit.h"
#include "tool/number_options.h"
#include "tool/option_values.h"
#include "tool/usage_error.h"

namespace tool {

Arguments::Arguments(const CommandRow& command)
    : command_(command), values_(command.options.size()), texts_(command.options.size()) {}

void Arguments::set(const OptionRow& option, std::string_view value) {
    if (option.kind == ValueKind::Texts) {
        texts_[placeOf(option.name)].emplace_back(value);
        return;
    }
    std::optional<std::string>& place = values_[placeOf(option.name)];
    if (option.kind != ValueKind::None) {
        const std::string name = std::string("--") + option.name;
        if (place) {
            throw UsageError(name + " is given twice");
        }
        if (!acceptsValue(option, value)) {
            throw UsageError(name + ": \"" + std::string(value) + "\" is not " +
                             valueDescription(option));
        }
    }
    place = value;
}

bool Arguments::isGiven(std::string_view option) const {
    return values_[placeOf(option)].has_value();
}

std::optional<std::string_view> Arguments::text(std::string_view option) const {
    const std::size_t place = placeOf(option);
    if (values_[place]) {
        return *values_[place];
    }
    const std::string_view initial = command_.options[place].initial;
    return initial.empty() ? std::nullopt : std::optional(initial);
}

const std::vector<std::string>& Arguments::texts(std::string_view option) const {
    return texts_[placeOf(option)];
}

std::optional<std::uint64_t> Arguments::whole(std::string_view option) const {
    const auto value = text(option);
    return value ? wholeNumber(*value) : std::nullopt;
}

std::optional<double> Arguments::number(std::string_view option) const {
    const auto value = text(option);
    return value ? anyNumber(*value) : std::nullopt;
}

std::optional<std::uint64_t> Arguments::size(std::string_view option) const {
    const auto value = text(option);
    return value ? memorySize(*value) : std::nullopt;
}

std::size_t Arguments::placeOf(std::string_view option) const {
    const auto found = std::find_if(command_.options.begin(), command_.options.end(),
                                    [option](const OptionRow& row) { return row.name == option; });
    if (found == command_.options.end()) {
        throw std::logic_error("the command has no option --" + std::string(option));
    }
    return static_cast<std::size_t>(found - command_.options.begin());
}

}  // namespace tool
