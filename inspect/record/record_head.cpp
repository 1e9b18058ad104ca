#include "inspect/record/record_head.h"

#include <array>
#include <vector>

#include "inspect/reading/charset.h"
#include "inspect/record/value_json.h"

namespace corvinex::inspect {

void writeName(JsonWriter& json, const FileFacts& facts) {
    json.key<"file">();
    if (reading::isUtf8(facts.name)) {
        json.string(facts.name);
        return;
    }
    json.string(validUtf8(facts.name));
    const std::vector<std::uint8_t> bytes(facts.name.begin(), facts.name.end());
    json.key<"file_bytes">().base64(bytes);
}

Status statusOf(const File* file) {
    return file == nullptr ? Status::Unreadable : file->status();
}

std::string isoTime(std::time_t time) {
    std::tm parts{};
    if (gmtime_r(&time, &parts) == nullptr) {
        return {};
    }
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

}  // namespace corvinex::inspect
