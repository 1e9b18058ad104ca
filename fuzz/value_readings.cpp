#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "corvinex/value.h"
#include "fuzz/target.h"
#include "fuzz/value_walk.h"
#include "inspect/field_type.h"
#include "inspect/reading/charset.h"
#include "inspect/reading/reading.h"
#include "vocabulary/registry.h"

// What a person reads of values of every encoding, each beside the others of its directory. The
// input's first byte chooses the kind of directory and the byte order of the file. Then follow
// entries: the number (two bytes, low byte first; one that is not known stands for some that is),
// the type, the bytes of the value (two bytes), and those bytes.

namespace {

using namespace corvinex::inspect;
using corvinex::registry::TagFact;

struct HeldEntry {
    std::uint16_t number;
    std::uint16_t type;
    std::span<const std::uint8_t> bytes;

    [[nodiscard]] std::size_t count() const { return bytes.size() / widthOf(type); }
    [[nodiscard]] Value value() const {
        const std::size_t size = count() * widthOf(type);
        auto owned = std::make_unique<std::byte[]>(size);
        if (size != 0) {
            std::memcpy(owned.get(), bytes.data(), size);
        }
        return {type, std::move(owned), size, count()};
    }

  private:
    static std::size_t widthOf(std::uint16_t type) {
        const auto* fact = findFieldType(type);
        return fact == nullptr ? 1 : fact->width;
    }
};

class HeldEntries final : public reading::Siblings {
  public:
    explicit HeldEntries(std::vector<HeldEntry> entries) : entries_(std::move(entries)) {}

    [[nodiscard]] std::optional<Value> find(std::uint16_t number,
                                            std::size_t mostBytes) const override {
        const HeldEntry* entry = entryWith(number);
        return entry == nullptr || entry->bytes.size() > mostBytes
                   ? std::nullopt
                   : std::optional<Value>(entry->value());
    }
    [[nodiscard]] std::optional<std::uint64_t> count(std::uint16_t number) const override {
        const HeldEntry* entry = entryWith(number);
        return entry == nullptr ? std::nullopt : std::optional<std::uint64_t>(entry->count());
    }
    [[nodiscard]] const std::vector<HeldEntry>& all() const { return entries_; }

  private:
    [[nodiscard]] const HeldEntry* entryWith(std::uint16_t number) const {
        const auto found = std::ranges::find(entries_, number, &HeldEntry::number);
        return found == entries_.end() ? nullptr : &*found;
    }
    std::vector<HeldEntry> entries_;
};

std::uint16_t takeNumber(std::span<const std::uint8_t>& input) {
    const unsigned number = input[0] + 256U * input[1];
    input = input.subspan(2);
    return static_cast<std::uint16_t>(number);
}

/// Readings of one entry may look at all others: a few are enough to meet each other.
HeldEntries entriesFrom(std::span<const std::uint8_t> input, DirectoryKind kind) {
    constexpr std::size_t headSize = 5;
    constexpr std::size_t mostEntries = 16;
    const auto facts = corvinex::registry::tagsOf(kind);
    std::vector<HeldEntry> entries;
    while (input.size() >= headSize && entries.size() < mostEntries) {
        std::uint16_t number = takeNumber(input);
        if (corvinex::registry::findTag(kind, number) == nullptr) {
            number = facts[number % facts.size()].number;
        }
        const std::uint16_t type = input[0];
        input = input.subspan(1);
        const std::size_t told = takeNumber(input);
        const std::size_t size = std::min<std::size_t>(told, input.size());
        entries.push_back({number, type, input.first(size)});
        input = input.subspan(size);
    }
    return HeldEntries(std::move(entries));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    constexpr std::array kinds{DirectoryKind::Main, DirectoryKind::Exif, DirectoryKind::Gps,
                               DirectoryKind::Interop};
    const DirectoryKind kind = kinds[data[0] % kinds.size()];
    const std::endian order = (data[0] & 0x80) == 0 ? std::endian::little : std::endian::big;
    const HeldEntries entries = entriesFrom(std::span(data, size).subspan(1), kind);
    for (const HeldEntry& entry : entries.all()) {
        const TagFact* fact = corvinex::registry::findTag(kind, entry.number);
        const Value value = entry.value();
        const auto text = reading::readingOf({kind, entry.number, *fact, value, entries, order});
        fuzz::require(!text || reading::isUtf8(*text), "a reading that is not UTF-8");
    }
    return 0;
}
