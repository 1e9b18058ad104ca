#include <algorithm>
#include <array>
#include <optional>
#include <tuple>
#include <vector>

#include "inspect/field_type.h"
#include "inspect/rules/directory_rules.h"
#include "inspect/rules/stored_numbers.h"
#include "inspect/stored_value.h"

// The keys of GeoTIFF: four numbers each, of which the second tells the tag that holds the values.

namespace corvinex::inspect {

namespace {

constexpr KnownTag keyDirectory = imageTag(34735);
constexpr std::uint64_t numbersOfKey = 4;
constexpr std::uint64_t mostKeys = 4096;

/// Counts of the first sound entries of a directory's tags.
class ValueCounts {
  public:
    explicit ValueCounts(const RuleContext& context) : context_(context) {}

    /// Nothing when there is no sound entry.
    [[nodiscard]] std::optional<std::uint64_t> find(std::uint64_t number) {
        if (!isReady_) {
            collect();
        }
        const auto row = std::ranges::lower_bound(rows_, number, {}, &Row::number);
        return row != rows_.end() && row->number == number ? std::optional(row->count)
                                                           : std::nullopt;
    }

  private:
    struct Row {
        std::uint16_t number;
        std::uint32_t place;
        std::uint64_t count;
    };

    void collect() {
        for (std::uint32_t place = 0; place < context_.entries.size(); ++place) {
            const EntryRecord& entry = context_.entries[place].record();
            if (findFieldType(entry.type) != nullptr && entry.count != 0 &&
                isInFile(context_.file, entry)) {
                rows_.push_back({entry.number, place, entry.count});
            }
        }
        std::ranges::sort(rows_, {},
                          [](const Row& row) { return std::tuple(row.number, row.place); });
        isReady_ = true;
    }

    const RuleContext& context_;
    std::vector<Row> rows_;
    bool isReady_ = false;
};

/// The number of a key whose values do not lie in the tag that it names; 0 when the head of the
/// keys is wrong; nothing when all is well or the file has become shorter.
std::optional<std::uint64_t> findBadKey(RuleContext& context, const EntryRecord& entry) {
    std::array<std::uint64_t, numbersOfKey> key{};
    if (entry.count < numbersOfKey) {
        return 0;
    }
    if (!readNumbers(context.file, entry, 0, key)) {
        return std::nullopt;
    }
    const std::uint64_t keys = key[3];
    if (key[0] != 1 || keys > mostKeys || numbersOfKey * (keys + 1) > entry.count) {
        return 0;
    }
    if (!context.keyNumbers.take(numbersOfKey * keys)) {
        context.reportLimit(Limit::Values, keyDirectory.number);
        return std::nullopt;
    }
    ValueCounts counts(context);
    for (std::uint64_t i = 1; i <= keys; ++i) {
        if (!readNumbers(context.file, entry, i * numbersOfKey, key)) {
            return std::nullopt;
        }
        const auto& [number, place, count, index] = key;
        const std::optional<std::uint64_t> available =
            place == 0 ? index + count : counts.find(place);
        if (!available || index + count > *available) {
            return number;
        }
    }
    return std::nullopt;
}

}  // namespace

void checkGeoKeys(RuleContext& context) {
    const SoundEntry entry = context.tags.sound(keyDirectory);
    if (!entry || entry.record->type != static_cast<std::uint16_t>(FieldType::Short)) {
        return;
    }
    if (const std::optional<std::uint64_t> key = findBadKey(context, *entry.record)) {
        context.report(Rule::GeoKeyDirectory, keyDirectory, *key);
    }
}

}  // namespace corvinex::inspect
