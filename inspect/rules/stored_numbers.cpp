#include "inspect/rules/stored_numbers.h"

#include <algorithm>
#include <array>

#include "format/byte_order.h"
#include "inspect/stored_value.h"

namespace corvinex::inspect {

namespace {

constexpr std::size_t mostRationals = 16;

template <class Number>
void widenAll(std::span<const unsigned char> bytes, bool swap, std::span<std::uint64_t> target) {
    std::size_t position = 0;
    for (std::uint64_t& number : target) {
        number = loadFromFile<Number>(bytes, position, swap);
        position += sizeof(Number);
    }
}

}  // namespace

std::optional<std::uint64_t> readFirstNumber(const FileContent& file, const EntryRecord& entry) {
    const FieldTypeFact* type = findFieldType(entry.type);
    if (type == nullptr || !holdsIntegers(*type)) {
        return std::nullopt;
    }
    const std::optional<StoredInteger> value = readInteger(file, entry, 0);
    return value && !value->isNegative ? std::optional(value->bits) : std::nullopt;
}

bool readNumbers(const FileContent& file, const EntryRecord& entry, std::uint64_t from,
                 std::span<std::uint64_t> target) {
    // Large reads save calls of the system, and this much stays in the processor's cache.
    constexpr std::size_t blockSize = 16'384;
    std::array<unsigned char, blockSize> buffer;  // NOLINT(*-member-init): filled before it is read
    const std::size_t width = findFieldType(entry.type)->width;
    while (!target.empty()) {
        const std::size_t length = std::min(target.size(), buffer.size() / width);
        const std::span<unsigned char> bytes = std::span(buffer).first(length * width);
        if (!readValueBytes(file, entry, from * width, std::as_writable_bytes(bytes))) {
            return false;
        }
        switch (width) {
            case sizeof(std::uint8_t):
                widenAll<std::uint8_t>(bytes, file.swap, target.first(length));
                break;
            case sizeof(std::uint16_t):
                widenAll<std::uint16_t>(bytes, file.swap, target.first(length));
                break;
            case sizeof(std::uint32_t):
                widenAll<std::uint32_t>(bytes, file.swap, target.first(length));
                break;
            default:
                widenAll<std::uint64_t>(bytes, file.swap, target.first(length));
        }
        target = target.subspan(length);
        from += length;
    }
    return true;
}

bool readRationals(const FileContent& file, const EntryRecord& entry,
                   std::span<WideRational> target) {
    std::array<unsigned char, mostRationals * 8> buffer{};
    const std::span<unsigned char> bytes = std::span(buffer).first(target.size() * 8);
    if (!readValueBytes(file, entry, 0, std::as_writable_bytes(bytes))) {
        return false;
    }
    const bool isSigned = entry.type == static_cast<std::uint16_t>(FieldType::SRational);
    const auto half = [&](std::size_t position) -> std::int64_t {
        return isSigned ? std::int64_t{loadFromFile<std::int32_t>(bytes, position, file.swap)}
                        : std::int64_t{loadFromFile<std::uint32_t>(bytes, position, file.swap)};
    };
    for (std::size_t i = 0; i < target.size(); ++i) {
        target[i] = {half(8 * i), half(8 * i + 4)};
    }
    return true;
}

}  // namespace corvinex::inspect
