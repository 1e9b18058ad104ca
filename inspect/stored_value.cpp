#include "inspect/stored_value.h"

#include <algorithm>
#include <array>
#include <memory>

#include "format/byte_order.h"
#include "format/checked_arithmetic.h"
#include "inspect/field_type.h"

namespace corvinex::inspect {

namespace {

/// An integer out of its bytes in the file's order, widened to 64 bits with its sign.
template <class Unsigned, class Signed>
std::uint64_t widen(std::span<const unsigned char> bytes, bool isSigned, bool swap) {
    if (isSigned) {
        return static_cast<std::uint64_t>(
            static_cast<std::int64_t>(loadFromFile<Signed>(bytes, 0, swap)));
    }
    return loadFromFile<Unsigned>(bytes, 0, swap);
}

}  // namespace

std::uint64_t getByteCount(const FileContent& file, const EntryRecord& entry) noexcept {
    const FieldTypeFact* type = findFieldType(entry.type);
    return type == nullptr ? file.layout.offsetSize : saturatingMultiply(entry.count, type->width);
}

bool isInline(const FileContent& file, const EntryRecord& entry) noexcept {
    return getByteCount(file, entry) <= file.layout.offsetSize;
}

std::uint64_t getOffset(const FileContent& file, const EntryRecord& entry) noexcept {
    std::array<unsigned char, 8> bytes{};
    std::ranges::transform(entry.field, bytes.begin(),
                           [](std::byte byte) { return std::to_integer<unsigned char>(byte); });
    return file.isBig() ? loadFromFile<std::uint64_t>(bytes, 0, file.swap)
                        : loadFromFile<std::uint32_t>(bytes, 0, file.swap);
}

bool isInFile(const FileContent& file, const EntryRecord& entry) noexcept {
    return isInline(file, entry) ||
           liesWithin(getOffset(file, entry), getByteCount(file, entry), file.end());
}

bool readValueBytes(const FileContent& file, const EntryRecord& entry, std::uint64_t from,
                    std::span<std::byte> target) {
    if (isInline(file, entry)) {
        std::ranges::copy(
            std::span(entry.field).subspan(static_cast<std::size_t>(from), target.size()),
            target.begin());
        return true;
    }
    return file.source.read(file.positionOf(getOffset(file, entry)) + from, target);
}

std::optional<Value> readValue(const FileContent& file, const EntryRecord& entry) {
    if (entry.count == 0 || !isInFile(file, entry)) {
        return std::nullopt;
    }
    const auto byteCount = static_cast<std::size_t>(getByteCount(file, entry));
    auto bytes = std::make_unique_for_overwrite<std::byte[]>(byteCount);
    if (!readValueBytes(file, entry, 0, {bytes.get(), byteCount})) {
        return std::nullopt;
    }
    const FieldTypeFact* type = findFieldType(entry.type);
    if (type == nullptr) {
        return Value(entry.type, std::move(bytes), byteCount, byteCount);
    }
    raw2native(bytes.get(), type->number, byteCount / type->number, file.swap);
    return Value(entry.type, std::move(bytes), byteCount, static_cast<std::size_t>(entry.count));
}

std::optional<PointerValue> readPointerValue(const FileContent& file, const EntryRecord& entry,
                                             std::uint64_t index) {
    const FieldTypeFact& type = *findFieldType(entry.type);
    std::array<unsigned char, 8> buffer{};
    const std::span bytes = std::span(buffer).first(type.width);
    if (!readValueBytes(file, entry, index * type.width, std::as_writable_bytes(bytes))) {
        return std::nullopt;
    }
    const bool isSigned = type.form == ElementForm::Signed;
    PointerValue value;
    switch (type.width) {
        case 1:
            value.bits = widen<std::uint8_t, std::int8_t>(bytes, isSigned, file.swap);
            break;
        case 2:
            value.bits = widen<std::uint16_t, std::int16_t>(bytes, isSigned, file.swap);
            break;
        case 4:
            value.bits = widen<std::uint32_t, std::int32_t>(bytes, isSigned, file.swap);
            break;
        default:
            value.bits = widen<std::uint64_t, std::int64_t>(bytes, isSigned, file.swap);
    }
    value.isNegative = isSigned && static_cast<std::int64_t>(value.bits) < 0;
    return value;
}

std::optional<PointerValue> readPointerOfModule(const FileContent& file, const EntryRecord& entry,
                                                std::uint64_t index) {
    constexpr std::uint64_t stride = 4;
    const std::uint64_t numberSize = findFieldType(entry.type)->number;
    // Whole numbers are read, as their bytes are put in order together.
    const std::uint64_t unit = std::max(stride, numberSize);
    const std::uint64_t start = index * stride / unit * unit;
    const std::uint64_t byteCount = getByteCount(file, entry);
    if (start >= byteCount) {
        return PointerValue{};
    }
    const std::uint64_t length = std::min(unit, byteCount - start);
    std::array<unsigned char, 8> buffer{};
    const auto bytes = std::span(buffer).first(static_cast<std::size_t>(length));
    if (!readValueBytes(file, entry, start, std::as_writable_bytes(bytes))) {
        return std::nullopt;
    }
    raw2native(bytes.data(), numberSize, length / numberSize, file.swap);
    const auto place = static_cast<std::size_t>(index * stride - start);
    return PointerValue{.bits = loadNative<std::uint32_t>(buffer, place), .isNegative = false};
}

}  // namespace corvinex::inspect
