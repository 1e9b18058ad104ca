#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "corvinex/directory_kind.h"
#include "corvinex/value.h"
#include "inspect/reading/reading.h"
#include "inspect/reading/siblings.h"
#include "vocabulary/registry.h"

// Entries as a test writes them down, and what is read of them.

namespace test {

using corvinex::inspect::DirectoryKind;
using corvinex::inspect::FieldType;
using corvinex::inspect::Rational;
using corvinex::inspect::SRational;
using corvinex::inspect::Value;

/// A value that can be copied, unlike those of files.
struct Elements {
    std::uint16_t type = 0;
    std::size_t size = 0;
    std::string bytes;

    [[nodiscard]] Value value() const {
        auto owned = std::make_unique<std::byte[]>(bytes.size());
        std::memcpy(owned.get(), bytes.data(), bytes.size());
        return {type, std::move(owned), bytes.size(), size};
    }
};

template <class Element>
Elements elements(FieldType type, const std::vector<Element>& values) {
    Elements made{static_cast<std::uint16_t>(type), values.size(), {}};
    made.bytes.resize(values.size() * sizeof(Element));
    std::memcpy(made.bytes.data(), values.data(), made.bytes.size());
    return made;
}

inline Elements shorts(const std::vector<std::uint16_t>& values) {
    return elements(FieldType::Short, values);
}
inline Elements longs(const std::vector<std::uint32_t>& values) {
    return elements(FieldType::Long, values);
}
inline Elements doubles(const std::vector<double>& values) {
    return elements(FieldType::Double, values);
}
inline Elements rationals(const std::vector<Rational>& values) {
    return elements(FieldType::Rational, values);
}
inline Elements signedRationals(const std::vector<SRational>& values) {
    return elements(FieldType::SRational, values);
}
inline Elements bytes(std::string_view characters) {
    return {static_cast<std::uint16_t>(FieldType::Byte), characters.size(),
            std::string(characters)};
}
inline Elements undefined(std::string_view characters) {
    return {static_cast<std::uint16_t>(FieldType::Undefined), characters.size(),
            std::string(characters)};
}
/// A text and its closing zero.
inline Elements ascii(std::string_view characters) {
    return {static_cast<std::uint16_t>(FieldType::Ascii), characters.size() + 1,
            std::string(characters) + '\0'};
}

/// A directory of such values.
class Entries : public corvinex::inspect::reading::Siblings {
  public:
    Entries() = default;
    Entries(std::initializer_list<std::pair<const std::uint16_t, Elements>> entries)
        : entries_(entries) {}

    [[nodiscard]] std::optional<Value> find(std::uint16_t number,
                                            std::size_t mostBytes) const override {
        const auto entry = entries_.find(number);
        if (entry == entries_.end() || entry->second.bytes.size() > mostBytes) {
            return std::nullopt;
        }
        return entry->second.value();
    }
    [[nodiscard]] std::optional<std::uint64_t> count(std::uint16_t number) const override {
        const auto entry = entries_.find(number);
        return entry == entries_.end() ? std::nullopt : std::optional(entry->second.size);
    }

  private:
    std::map<std::uint16_t, Elements> entries_;
};

/// What a person reads of a value of a tag in a directory of a kind; "-" where that is nothing.
inline std::string readingIn(DirectoryKind kind, std::uint16_t number, const Elements& held,
                             const Entries& siblings = {},
                             std::endian fileOrder = std::endian::little) {
    const Value value = held.value();
    const auto* fact = corvinex::registry::findTag(kind, number);
    return corvinex::inspect::reading::readingOf({kind, number, *fact, value, siblings, fileOrder})
        .value_or("-");
}
inline std::string mainReading(std::uint16_t number, const Elements& held,
                               const Entries& siblings = {}) {
    return readingIn(DirectoryKind::Main, number, held, siblings);
}
inline std::string exifReading(std::uint16_t number, const Elements& held,
                               const Entries& siblings = {}) {
    return readingIn(DirectoryKind::Exif, number, held, siblings);
}
inline std::string gpsReading(std::uint16_t number, const Elements& held,
                              const Entries& siblings = {}) {
    return readingIn(DirectoryKind::Gps, number, held, siblings);
}

}  // namespace test
