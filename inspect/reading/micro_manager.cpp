#include "inspect/reading/micro_manager.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <vector>

#include "inspect/reading/excerpt.h"
#include "inspect/reading/number_text.h"

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

/// Keeps the values of known keys of the outermost object, and nothing of what is nested in it.
class KeyHandler {
  public:
    // What the parser tells; it goes on while the answer is true. Its names are not ours.
    // NOLINTBEGIN(readability-identifier-naming)
    bool null() { return ignore(); }
    bool boolean(bool /*value*/) { return ignore(); }
    bool number_integer(std::int64_t value) { return keep(integerText(value)); }
    bool number_unsigned(std::uint64_t value) { return keep(integerText(value)); }
    bool number_float(double /*value*/, const std::string& written) { return keep(written); }
    bool string(const std::string& value) { return keep(value); }
    bool binary(const std::vector<std::uint8_t>& /*value*/) { return ignore(); }
    bool start_object(std::size_t /*members*/) { return nest(1); }
    bool end_object() { return nest(-1); }
    bool start_array(std::size_t /*elements*/) { return nest(1); }
    bool end_array() { return nest(-1); }
    bool key(const std::string& name) {
        const auto* key = std::ranges::find(keys, name, &Key::name);
        wanted_ =
            depth_ == 1 && key != keys.end() ? &values_[std::size_t(key - keys.begin())] : nullptr;
        return true;
    }
    static bool parse_error(std::size_t /*place*/, const std::string& /*token*/,
                            const nlohmann::detail::exception& /*reason*/) {
        return false;
    }
    // NOLINTEND(readability-identifier-naming)

    [[nodiscard]] std::string_view value(std::size_t key) const { return values_[key]; }

  private:
    bool ignore() {
        wanted_ = nullptr;
        return true;
    }
    bool nest(int change) {
        depth_ += change;
        return ignore();
    }
    bool keep(const std::string& text) {
        if (wanted_ != nullptr) {
            *wanted_ = excerpt(text, 40);
        }
        return ignore();
    }

    std::array<std::string, keys.size()> values_;
    std::string* wanted_ = nullptr;
    int depth_ = 0;
};

}  // namespace

std::optional<std::string> describeMicroManager(std::string_view text) {
    constexpr std::size_t longestText = std::size_t{1} << 20U;
    if (!text.starts_with('{') || text.size() > longestText) {
        return std::nullopt;
    }
    KeyHandler handler;
    if (!nlohmann::json::sax_parse(text, &handler)) {
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
