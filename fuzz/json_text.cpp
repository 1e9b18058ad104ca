#include "fuzz/json_text.h"

#include <simdjson.h>

namespace fuzz {

bool isJson(const std::string& text) {
    // It keeps its memory from one text to the next.
    static simdjson::dom::parser parser;
    return parser.parse(text).error() == simdjson::SUCCESS;
}

}  // namespace fuzz
