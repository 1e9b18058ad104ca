#include "inspect/stored_value.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>

#include "format/byte_order.h"
#include "format/checked_arithmetic.h"
#include "format/entry_fields.h"
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

/// Bytes of a value and whether they lie in the entry, found once for all that is asked of it.
struct Extent {
    std::uint64_t byteCount;
    bool isInline;
};

Extent extentOf(const FileContent& file, const EntryRecord& entry,
                const FieldTypeFact* type) noexcept {
    const std::uint64_t fieldSize = file.layout.offsetSize;
    const std::uint64_t byteCount =
        type == nullptr ? fieldSize : saturatingMultiply(entry.count, type->width);
    return {byteCount, byteCount <= fieldSize};
}

Extent extentOf(const FileContent& file, const EntryRecord& entry) noexcept {
    return extentOf(file, entry, findFieldType(entry.type));
}

/// Copies bytes of the value field, of which the target takes no more than there are.
void copyField(const EntryRecord& entry, std::uint64_t from, std::span<std::byte> target) {
    const auto bytes =
        std::span(entry.field).subspan(static_cast<std::size_t>(from), target.size());
    if (!bytes.empty()) {
        std::memcpy(target.data(), bytes.data(), bytes.size());
    }
}

}  // namespace

std::uint64_t getByteCount(const FileContent& file, const EntryRecord& entry) noexcept {
    return extentOf(file, entry).byteCount;
}

bool isInline(const FileContent& file, const EntryRecord& entry) noexcept {
    return extentOf(file, entry).isInline;
}

std::uint64_t getOffset(const FileContent& file, const EntryRecord& entry) noexcept {
    const auto field = std::bit_cast<std::array<unsigned char, sizeof entry.field>>(entry.field);
    return loadOffset(field, 0, file.layout.offsetSize, file.swap);
}

bool isInFile(const FileContent& file, const EntryRecord& entry) noexcept {
    const Extent extent = extentOf(file, entry);
    return extent.isInline || liesWithin(getOffset(file, entry), extent.byteCount, file.end());
}

bool readValueBytes(const FileContent& file, const EntryRecord& entry, std::uint64_t from,
                    std::span<std::byte> target) {
    if (isInline(file, entry)) {
        copyField(entry, from, target);
        return true;
    }
    return file.source.read(file.positionOf(getOffset(file, entry)) + from, target);
}

std::optional<Value> readValue(const FileContent& file, const EntryRecord& entry) {
    const FieldTypeFact* type = findFieldType(entry.type);
    const Extent extent = extentOf(file, entry, type);
    const std::uint64_t offset = extent.isInline ? 0 : getOffset(file, entry);
    if (entry.count == 0 ||
        (!extent.isInline && !liesWithin(offset, extent.byteCount, file.end()))) {
        return std::nullopt;
    }
    const auto byteCount = static_cast<std::size_t>(extent.byteCount);
    auto bytes = std::make_unique_for_overwrite<std::byte[]>(byteCount);
    if (extent.isInline) {
        copyField(entry, 0, {bytes.get(), byteCount});
    } else if (!file.source.read(file.positionOf(offset), {bytes.get(), byteCount})) {
        return std::nullopt;
    }
    if (type == nullptr) {
        return Value(entry.type, std::move(bytes), byteCount, byteCount);
    }
    raw2native(bytes.get(), type->number, byteCount / type->number, file.swap);
    return Value(entry.type, std::move(bytes), byteCount, static_cast<std::size_t>(entry.count));
}

std::optional<StoredInteger> readInteger(const FileContent& file, const EntryRecord& entry,
                                         std::uint64_t index) {
    const FieldTypeFact& type = *findFieldType(entry.type);
    std::array<unsigned char, 8> buffer{};
    const std::span bytes = std::span(buffer).first(type.width);
    if (!readValueBytes(file, entry, index * type.width, std::as_writable_bytes(bytes))) {
        return std::nullopt;
    }
    const bool isSigned = type.form == ElementForm::Signed;
    StoredInteger value;
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

std::optional<StoredInteger> readPointerOfModule(const FileContent& file, const EntryRecord& entry,
                                                 std::uint64_t index) {
    constexpr std::uint64_t stride = 4;
    const std::uint64_t numberSize = findFieldType(entry.type)->number;
    // Whole numbers are read, as their bytes are put in order together.
    const std::uint64_t unit = std::max(stride, numberSize);
    const std::uint64_t start = index * stride / unit * unit;
    const std::uint64_t byteCount = getByteCount(file, entry);
    if (start >= byteCount) {
        return StoredInteger{};
    }
    const std::uint64_t length = std::min(unit, byteCount - start);
    std::array<unsigned char, 8> buffer{};
    const auto bytes = std::span(buffer).first(static_cast<std::size_t>(length));
    if (!readValueBytes(file, entry, start, std::as_writable_bytes(bytes))) {
        return std::nullopt;
    }
    raw2native(bytes.data(), numberSize, length / numberSize, file.swap);
    const auto place = static_cast<std::size_t>(index * stride - start);
    return StoredInteger{.bits = loadNative<std::uint32_t>(buffer, place), .isNegative = false};
}

}  // namespace corvinex::inspect
