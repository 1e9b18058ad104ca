#include "tag/tiff_type.h"

#include "entry/reports/fatal_errors.h"

namespace corvinex {

std::string get_datatype_name(TIFFDataType type) {
    const auto code = static_cast<std::uint32_t>(type);
    if (!isKnownTypeCode(code)) {
        raiseFatal(quorra::corvinex::unrecognizedTagFormatId(static_cast<std::uint16_t>(type)));
    }
    return std::string(fieldTypes[code].name);
}

}  // namespace corvinex
