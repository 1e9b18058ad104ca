#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tool/command_table.h"

namespace tool {

/// What a command was given: its operands and the values of its options, each of the kind that the
/// option's row asks for. An option that the row of the command does not hold raises
/// std::logic_error.
class Arguments {
  public:
    explicit Arguments(const CommandRow& command);

    /// Takes an option with its value (empty for one that has none). Raises UsageError for a value
    /// that is not of the option's kind, and for a second value.
    void set(const OptionRow& option, std::string_view value);
    void addOperand(std::string_view operand) { operands_.emplace_back(operand); }

    [[nodiscard]] const std::vector<std::string>& operands() const noexcept { return operands_; }
    [[nodiscard]] bool isGiven(std::string_view option) const;
    /// The value given, else the initial one; nothing where there is neither.
    [[nodiscard]] std::optional<std::string_view> text(std::string_view option) const;
    /// All values of an option that may be given several times, in their order.
    [[nodiscard]] const std::vector<std::string>& texts(std::string_view option) const;
    [[nodiscard]] std::optional<std::uint64_t> whole(std::string_view option) const;
    [[nodiscard]] std::optional<double> number(std::string_view option) const;
    [[nodiscard]] std::optional<std::uint64_t> size(std::string_view option) const;

  private:
    [[nodiscard]] std::size_t placeOf(std::string_view option) const;

    const CommandRow& command_;
    std::vector<std::string> operands_;
    std::vector<std::optional<std::string>> values_;  // in the order of the command's options
    std::vector<std::vector<std::string>> texts_;     // the same, of those that may be repeated
};

}  // namespace tool
