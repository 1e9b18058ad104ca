#include "inspect/reading/micro_manager.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <array>

#include "inspect/reading/excerpt.h"

namespace corvinex::inspect::reading {
namespace {

struct Key {
    std::string_view name;
    std::string_view before;
    std::string_view behind;
};
constexpr std::array keys{
    Key{"Channel", "channel ", ""},
    Key{"Exposure-ms", "exposure ", " ms"},
    Key{"PixelSizeUm", "pixel size ", " um"},
    Key{"PositionName", "position ", ""},
    Key{"Slice", "slice ", ""},
    Key{"Frame", "frame ", ""},
};

/// Keeps the values of known keys of the outermost object. Numbers come as they are written.
class KeyHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, KeyHandler> {
  public:
    bool StartObject() {
        ++depth_;
        return Default();
    }
    bool EndObject(rapidjson::SizeType /*members*/) {
        --depth_;
        return true;
    }
    bool StartArray() {
        ++depth_;
        return Default();
    }
    bool EndArray(rapidjson::SizeType /*elements*/) {
        --depth_;
        return true;
    }
    bool Key(const char* text, rapidjson::SizeType length, bool /*copy*/) {
        const auto* key =
            std::ranges::find(keys, std::string_view(text, length), &reading::Key::name);
        wanted_ =
            depth_ == 1 && key != keys.end() ? &values_[std::size_t(key - keys.begin())] : nullptr;
        return true;
    }
    bool String(const char* text, rapidjson::SizeType length, bool /*copy*/) {
        return keep({text, length});
    }
    bool RawNumber(const char* text, rapidjson::SizeType length, bool /*copy*/) {
        return keep({text, length});
    }
    bool Default() {
        wanted_ = nullptr;
        return true;
    }

    [[nodiscard]] std::string_view value(std::size_t key) const { return values_[key]; }

  private:
    bool keep(std::string_view text) {
        if (wanted_ != nullptr) {
            *wanted_ = excerpt(text, 40);
        }
        return Default();
    }

    std::array<std::string, keys.size()> values_;
    std::string* wanted_ = nullptr;
    int depth_ = 0;
};

}  // namespace

std::optional<std::string> describeMicroManager(std::string_view text) {
    // Neither the parser's stack nor the machine's grows with nested brackets beyond the text's
    // size.
    constexpr unsigned flags = rapidjson::kParseIterativeFlag |
                               rapidjson::kParseNumbersAsStringsFlag |
                               rapidjson::kParseStopWhenDoneFlag;
    constexpr std::size_t longestText = std::size_t{1} << 20U;
    if (!text.starts_with('{') || text.size() > longestText) {
        return std::nullopt;
    }
    rapidjson::MemoryStream stream(text.data(), text.size());
    rapidjson::Reader reader;
    KeyHandler handler;
    if (!reader.Parse<flags>(stream, handler)) {
        return std::nullopt;
    }
    std::string reading;
    for (std::size_t key = 0; key < keys.size(); ++key) {
        if (!handler.value(key).empty()) {
            reading += reading.empty() ? "" : ", ";
            reading += std::string(keys[key].before) + std::string(handler.value(key)) +
                       std::string(keys[key].behind);
        }
    }
    return reading.empty() ? std::nullopt : std::optional(reading);
}

}  // namespace corvinex::inspect::reading
