#include "inspect/reading/micro_manager.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <utility>
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

struct CountKey {
    std::string_view name;
    std::string_view one;
    std::string_view several;
};
constexpr std::string_view summary = "Summary";
constexpr std::array counts{
    CountKey{"Channels", "channel", "channels"},
    CountKey{"Slices", "slice", "slices"},
    CountKey{"Frames", "frame", "frames"},
    CountKey{"Positions", "position", "positions"},
};

/// Keeps the values of known keys of the outermost object, or of the object of that name in it, and
/// nothing of what is nested deeper.
class KeyHandler {
  public:
    KeyHandler(std::vector<std::string_view> names, std::string_view object)
        : keys_(std::move(names)), object_(object), values_(keys_.size()) {}

    // What the parser tells; it goes on while the answer is true. Its names are not ours.
    // NOLINTBEGIN(readability-identifier-naming)
    bool null() { return ignore(); }
    bool boolean(bool /*value*/) { return ignore(); }
    bool number_integer(std::int64_t value) { return keep(integerText(value)); }
    bool number_unsigned(std::uint64_t value) { return keep(integerText(value)); }
    bool number_float(double /*value*/, const std::string& written) { return keep(written); }
    bool string(const std::string& value) { return keep(value); }
    bool binary(const std::vector<std::uint8_t>& /*value*/) { return ignore(); }
    bool start_object(std::size_t /*members*/) {
        hasObject_ = hasObject_ || (depth_ == 1 && isOfObject_);
        return nest(1);
    }
    bool end_object() { return nest(-1); }
    bool start_array(std::size_t /*elements*/) { return nest(1); }
    bool end_array() { return nest(-1); }
    bool key(const std::string& name) {
        if (depth_ == 1) {
            isOfObject_ = name == object_;
        }
        const bool isKnown = object_.empty() ? depth_ == 1 : depth_ == 2 && isOfObject_;
        const auto key = std::ranges::find(keys_, name);
        wanted_ =
            isKnown && key != keys_.end() ? &values_[std::size_t(key - keys_.begin())] : nullptr;
        return true;
    }
    static bool parse_error(std::size_t /*place*/, const std::string& /*token*/,
                            const nlohmann::detail::exception& /*reason*/) {
        return false;
    }
    // NOLINTEND(readability-identifier-naming)

    [[nodiscard]] const std::string& value(std::size_t key) const { return values_[key]; }
    [[nodiscard]] bool hasObject() const { return hasObject_; }

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

    std::vector<std::string_view> keys_;
    std::string_view object_;
    std::vector<std::string> values_;
    bool isOfObject_ = false;
    bool hasObject_ = false;
    std::string* wanted_ = nullptr;
    int depth_ = 0;
};

bool parse(std::string_view text, KeyHandler& handler) {
    constexpr std::size_t longestText = std::size_t{1} << 20U;
    return text.starts_with('{') && text.size() <= longestText &&
           nlohmann::json::sax_parse(text, &handler);
}

template <class Rows>
std::vector<std::string_view> namesOf(const Rows& rows) {
    std::vector<std::string_view> names(rows.size());
    std::ranges::transform(rows, names.begin(), [](const auto& row) { return row.name; });
    return names;
}

}  // namespace

std::optional<std::string> describeMicroManagerSummary(std::string_view text) {
    KeyHandler handler(namesOf(counts), summary);
    if (!parse(text, handler) || !handler.hasObject()) {
        return std::nullopt;
    }
    std::string reading = "Micro-Manager";
    for (std::size_t key = 0; key < counts.size(); ++key) {
        const std::string& value = handler.value(key);
        const char* const end = value.data() + value.size();
        std::uint64_t number = 0;
        const auto result = std::from_chars(value.data(), end, number);
        if (result.ec == std::errc() && result.ptr == end) {
            reading += ", " + countText(number, counts[key].one, counts[key].several);
        }
    }
    return reading;
}

std::optional<std::string> describeMicroManager(std::string_view text) {
    KeyHandler handler(namesOf(keys), "");
    if (!parse(text, handler)) {
        return std::nullopt;
    }
    std::string reading;
    for (std::size_t key = 0; key < keys.size(); ++key) {
        if (!handler.value(key).empty()) {
            reading += reading.empty() ? "" : ", ";
            reading +=
                std::string(keys[key].before) + handler.value(key) + std::string(keys[key].behind);
        }
    }
    return reading.empty() ? std::nullopt : std::optional(reading);
}

}  // namespace corvinex::inspect::reading
