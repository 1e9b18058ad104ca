#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "tag/tag_validation.h"
#include "vocabulary/tag_row_index.h"

namespace corvinex {

class TiffTag;

/// The decoder of a tag's value.
struct TagDecoder {
    std::uint16_t tag;
    void (TiffTag::*process)();
};

/// What the tables say of a tag by its number alone. A number that no table has keeps the initial
/// values.
struct TagRules {
    const char* primaryName = nullptr;  ///< in main and EXIF directories
    const TypeRule* typeRule = nullptr;
    std::uint32_t allowedTypes = ~std::uint32_t{0};  ///< bit i stands for type code i
    bool hasRequiredCount = false;
    bool isSubIfdPointer = false;
    void (TiffTag::*decode)() = nullptr;
};

/// The rules of all tags, gathered from the tables that state them: every entry of a file asks for
/// all of its own, and one look-up costs a quarter of one in each table.
class TagRulesTable {
  public:
    explicit TagRulesTable(std::span<const TagDecoder> decoders);

    [[nodiscard]] const TagRules& find(std::uint16_t tag) const noexcept {
        const std::size_t row = rowOfTag_.find(tag);
        return row == TagRowIndex::none ? ofOthers_ : rows_[row];
    }

  private:
    [[nodiscard]] TagRules& rulesOf(std::uint16_t tag);

    TagRules ofOthers_;
    TagRowIndex rowOfTag_;
    std::vector<TagRules> rows_;
};

}  // namespace corvinex
