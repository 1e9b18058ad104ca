#include "bench/directory_bytes.h"

#include <bit>

#include "vocabulary/field_types.h"

namespace bench {
namespace {

unsigned widthOf(Type type) {
    return static_cast<unsigned>(corvinex::getElementWidth(static_cast<std::uint32_t>(type)));
}

// TIFF asks for even offsets of values.
std::uint64_t evened(std::uint64_t size) {
    return size + size % 2;
}

}  // namespace

void appendNumber(Bytes& out, std::uint64_t value, unsigned width, ByteOrder order) {
    for (unsigned i = 0; i < width; ++i) {
        const unsigned place = order == ByteOrder::Little ? i : width - 1 - i;
        out.push_back(static_cast<unsigned char>(value >> (8 * place)));
    }
}

std::uint64_t headerSize(Layout layout) {
    return layout == Layout::Classic ? 8 : 16;
}

void appendHeader(Bytes& out, ByteOrder order, Layout layout) {
    const unsigned char mark = order == ByteOrder::Little ? 'I' : 'M';
    out.insert(out.end(), {mark, mark});
    if (layout == Layout::Classic) {
        appendNumber(out, 42, 2, order);
        appendNumber(out, headerSize(layout), 4, order);
    } else {
        appendNumber(out, 43, 2, order);
        appendNumber(out, 8, 2, order);  // bytes of an offset
        appendNumber(out, 0, 2, order);
        appendNumber(out, headerSize(layout), 8, order);
    }
}

void Directory::clear() {
    entries_.clear();
    values_.clear();
}

Directory& Directory::number(std::uint16_t tag, Type type, std::uint64_t value) {
    return numbers(tag, type, std::span(&value, 1));
}

Directory& Directory::numbers(std::uint16_t tag, Type type, std::span<const std::uint64_t> values) {
    const std::size_t start = values_.size();
    values_.reserve(start + values.size() * widthOf(type));
    for (const std::uint64_t value : values) {
        appendNumber(values_, value, widthOf(type), order_);
    }
    add(tag, type, values.size(), start);
    return *this;
}

Directory& Directory::doubles(std::uint16_t tag, std::initializer_list<double> values) {
    const std::size_t start = values_.size();
    for (const double value : values) {
        appendNumber(values_, std::bit_cast<std::uint64_t>(value), 8, order_);
    }
    add(tag, Type::Double, values.size(), start);
    return *this;
}

Directory& Directory::rationals(
    std::uint16_t tag, std::initializer_list<std::pair<std::uint32_t, std::uint32_t>> values,
    Type type) {
    const std::size_t start = values_.size();
    for (const auto& [numerator, denominator] : values) {
        appendNumber(values_, numerator, 4, order_);
        appendNumber(values_, denominator, 4, order_);
    }
    add(tag, type, values.size(), start);
    return *this;
}

Directory& Directory::text(std::uint16_t tag, std::string_view characters) {
    const std::size_t start = values_.size();
    values_.insert(values_.end(), characters.begin(), characters.end());
    values_.push_back(0);
    add(tag, Type::Ascii, characters.size() + 1, start);
    return *this;
}

Directory& Directory::bytes(std::uint16_t tag, Type type, std::string_view content) {
    const std::size_t start = values_.size();
    values_.insert(values_.end(), content.begin(), content.end());
    add(tag, type, content.size() / widthOf(type), start);
    return *this;
}

void Directory::add(std::uint16_t tag, Type type, std::uint64_t count, std::size_t start) {
    entries_.push_back({tag, type, count, start, values_.size() - start});
}

std::uint64_t Directory::blockSize() const {
    return countSize() + entries_.size() * (4 + 2 * offsetSize()) + offsetSize();
}

std::uint64_t Directory::valuesSize() const {
    std::uint64_t size = 0;
    for (const Entry& entry : entries_) {
        size += isOutside(entry) ? evened(entry.size) : 0;
    }
    return size;
}

std::vector<std::span<const unsigned char>> Directory::valuesOutside() const {
    std::vector<std::span<const unsigned char>> values;
    for (const Entry& entry : entries_) {
        if (isOutside(entry)) {
            values.push_back(std::span(values_).subspan(entry.start, entry.size));
        }
    }
    return values;
}

void Directory::append(Bytes& out, std::uint64_t position, std::uint64_t next) const {
    std::vector<std::uint64_t> offsets;
    std::uint64_t offset = position + blockSize();
    const auto values = valuesOutside();
    for (const auto& value : values) {
        offsets.push_back(offset);
        offset += evened(value.size());
    }
    appendBlock(out, offsets, next);
    for (const auto& value : values) {
        out.insert(out.end(), value.begin(), value.end());
        out.resize(out.size() + value.size() % 2);
    }
}

void Directory::appendBlock(Bytes& out, std::span<const std::uint64_t> offsets,
                            std::uint64_t next) const {
    appendNumber(out, entries_.size(), countSize(), order_);
    std::size_t outside = 0;
    for (const Entry& entry : entries_) {
        appendNumber(out, entry.tag, 2, order_);
        appendNumber(out, static_cast<std::uint16_t>(entry.type), 2, order_);
        appendNumber(out, entry.count, offsetSize(), order_);
        if (isOutside(entry)) {
            appendNumber(out, offsets[outside++], offsetSize(), order_);
        } else {
            const auto value = std::span(values_).subspan(entry.start, entry.size);
            out.insert(out.end(), value.begin(), value.end());
            out.resize(out.size() + offsetSize() - entry.size);
        }
    }
    appendNumber(out, next, offsetSize(), order_);
}

}  // namespace bench
