#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "inspect/rules/rule_context.h"
#include "inspect/stored_value.h"

namespace corvinex::inspect {

/// Findings about offsets that lead to directories.
class PointerRules {
  public:
    explicit PointerRules(RuleContext& context)
        : context_(context), file_(context.file), findings_(context.findings) {}

    /// The header's offset, which belongs to no directory.
    void checkHeader();
    /// The pointers and the next offset of the context's directory.
    void checkDirectory();

  private:
    [[nodiscard]] bool isBad(std::uint64_t offset) const;
    [[nodiscard]] bool isPointerType(std::uint16_t code) const;
    void checkPointer(const Entry& entry, std::uint32_t entryIndex, std::uint64_t firstValue);
    void checkValue(std::uint32_t entryIndex, std::uint64_t element, std::uint64_t valueIndex,
                    std::uint32_t target);
    void checkNext();
    [[nodiscard]] std::optional<std::uint32_t> familyOf(std::uint32_t pointer) const;
    void reportKnown(std::optional<std::uint16_t> tag, std::optional<std::uint32_t> family,
                     std::uint32_t target, std::uint64_t offset);
    [[nodiscard]] bool isOnTheWay(std::uint32_t chain) const;
    [[nodiscard]] std::optional<std::uint32_t> findDirectory(std::uint64_t offset);
    void noteTotal(std::optional<std::uint16_t> tag);

    RuleContext& context_;
    const FileContent& file_;
    FindingList& findings_;
    bool isDepthTold_ = false;  ///< of the directory
    bool isTotalTold_ = false;
    std::vector<std::pair<std::uint64_t, std::uint32_t>> byOffset_;
};

}  // namespace corvinex::inspect
