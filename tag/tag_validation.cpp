#include "tag/tag_validation.h"

#include "entry/reports/fatal_errors.h"
#include "vocabulary/tag_table.h"

namespace corvinex {

void validate_tag_against_number_of_components(unsigned short id, unsigned long count) {
    const TagRow& row = findTag(id);
    if (row.requiredCount != 0 && count != row.requiredCount) {
        raiseFatal(quorra::corvinex::badTagDataCount(id, row.name, count, row.requiredCount));
    }
}

}  // namespace corvinex
