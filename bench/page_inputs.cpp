#include <algorithm>
#include <cstddef>
#include <numeric>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "bench/inputs.h"
#include "bench/output.h"
#include "vocabulary/tag_table.h"

// Files of many pages, and files of one page with very many tags or very long values.

namespace bench {
namespace {

/// A file of one page.
void writePage(const std::filesystem::path& path, const Directory& page, Layout layout) {
    Bytes bytes;
    appendHeader(bytes, ByteOrder::Little, layout);
    page.append(bytes, headerSize(layout), 0);
    Output output(path);
    output.write(bytes);
    output.close();
}

/// Indices in a random order that is always the same. std::shuffle may give another one with
/// another library.
std::vector<std::size_t> shuffledIndices(std::size_t count) {
    std::vector<std::size_t> indices(count);
    std::iota(indices.begin(), indices.end(), std::size_t{0});
    std::mt19937_64 random(20240305);  // NOLINT(cert-msc51-cpp): each run makes the same file
    for (std::size_t i = count; i > 1; --i) {
        std::swap(indices[i - 1], indices[random() % i]);
    }
    return indices;
}

bool hasName(std::uint16_t tag) {
    const auto named = corvinex::primaryTagTable();
    return std::any_of(named.begin(), named.end(), [tag](const corvinex::TagRow& row) {
        return row.number == tag && row.name != nullptr;
    });
}

/// Adds a value of one of all widths in turn. One in eight stands outside of its entry.
void addPrivateTag(Directory& page, std::uint16_t tag, std::uint64_t index) {
    switch (index % 8) {
        case 0:
            page.doubles(tag, {1.5, static_cast<double>(index), 0.25});
            return;
        case 1:
        case 2:
            page.number(tag, Type::Short, index);
            return;
        case 3:
            page.number(tag, Type::Long8, index);
            return;
        case 4:
            page.rationals(tag, {{static_cast<std::uint32_t>(index), 7}});
            return;
        case 5:
            page.numbers(tag, Type::Short, {1, 2, 3, index});
            return;
        default:
            page.number(tag, Type::Long, index);
    }
}

/// A text of 3 to 39 characters, with words and a number as cameras and microscopes write them.
std::string shortText(std::uint64_t index) {
    std::string text = numbered("Lens %05llu f/2.8 by the workshop of 1967", index);
    text.resize(3 + index / 6 % 37);
    return text;
}

/// Adds a value of one of the six commonest types in turn. Texts of more than 8 bytes stand outside
/// of their entries.
void addTextOrNumber(Directory& page, std::uint16_t tag, std::uint64_t index) {
    switch (index % 6) {
        case 0:
            page.number(tag, Type::Byte, index);
            return;
        case 1:
            page.text(tag, shortText(index));
            return;
        case 2:
            page.number(tag, Type::Short, index);
            return;
        case 3:
            page.number(tag, Type::Long, index);
            return;
        case 4:
            page.rationals(tag, {{static_cast<std::uint32_t>(index), 7}});
            return;
        default:
            page.doubles(tag, {static_cast<double>(index) / 4});
    }
}

/// Writes a BigTIFF of one page with this many more tags, each made by add. There may be more of
/// them than there are numbers for private use, so every number that has no name is taken.
void writePrivateTags(const std::filesystem::path& path, std::uint64_t tags,
                      void (*add)(Directory& page, std::uint16_t tag, std::uint64_t index)) {
    constexpr std::uint16_t firstPrivate = 701;
    Directory page(ByteOrder::Little, Layout::BigTiff);
    fillPage(page, 0);
    std::uint64_t index = 0;
    for (std::uint16_t tag = firstPrivate; index < tags; ++tag) {
        if (!hasName(tag)) {
            add(page, tag, index++);
        }
    }
    writePage(path, page, Layout::BigTiff);
}

}  // namespace

// The compression is LZW, with which a reader cannot check the strip's size against the image's.
void fillPage(Directory& page, std::uint64_t index) {
    const auto resolution = static_cast<std::uint32_t>(72 + index % 300);
    page.clear();
    page.number(254, Type::Long, 0)
        .number(256, Type::Short, 512)
        .number(257, Type::Short, 512)
        .number(258, Type::Short, 16)
        .number(259, Type::Short, 5)
        .number(262, Type::Short, 1)
        .text(270, numbered("page %06llu of the stack", index))
        .number(273, Type::Long, 8)
        .number(277, Type::Short, 1)
        .number(278, Type::Short, 512)
        .number(279, Type::Long, 1000 + index % 1000)
        .rationals(282, {{resolution, 1}})
        .rationals(283, {{resolution, 1}})
        .number(296, Type::Short, 2)
        .text(305, "acquisition")
        .text(306, "2024:03:05 14:07:09");
}

void writePages(const std::filesystem::path& path, std::uint64_t pages, ByteOrder order,
                Layout layout) {
    constexpr std::size_t writtenAtOnce = 1 << 20;
    Output output(path);
    Bytes bytes;
    appendHeader(bytes, order, layout);
    std::uint64_t position = headerSize(layout);
    Directory page(order, layout);
    for (std::uint64_t i = 0; i < pages; ++i) {
        fillPage(page, i);
        const std::uint64_t end = position + page.size();
        page.append(bytes, position, i + 1 < pages ? end : 0);
        position = end;
        if (bytes.size() > writtenAtOnce) {
            output.write(bytes);
        }
    }
    output.write(bytes);
    output.close();
}

void writeScattered(const std::filesystem::path& path, std::uint64_t pages) {
    Directory page(ByteOrder::Little, Layout::Classic);
    std::vector<Bytes> values;
    for (std::uint64_t i = 0; i < pages; ++i) {
        fillPage(page, i);
        for (const auto& value : page.valuesOutside()) {
            values.emplace_back(value.begin(), value.end());
            values.back().resize(value.size() + value.size() % 2);
        }
    }
    const auto order = shuffledIndices(values.size());
    std::vector<std::uint64_t> offsets(values.size());
    std::uint64_t position = headerSize(Layout::Classic) + pages * page.blockSize();
    for (const std::size_t value : order) {
        offsets[value] = position;
        position += values[value].size();
    }
    Bytes bytes;
    appendHeader(bytes, ByteOrder::Little, Layout::Classic);
    const std::size_t valuesOfPage = page.valuesOutside().size();
    for (std::uint64_t i = 0; i < pages; ++i) {
        fillPage(page, i);
        const std::uint64_t end = bytes.size() + page.blockSize();
        page.appendBlock(bytes, std::span(offsets).subspan(i * valuesOfPage, valuesOfPage),
                         i + 1 < pages ? end : 0);
    }
    for (const std::size_t value : order) {
        bytes.insert(bytes.end(), values[value].begin(), values[value].end());
    }
    Output output(path);
    output.write(bytes);
    output.close();
}

void writeWide(const std::filesystem::path& path, std::uint64_t tags) {
    writePrivateTags(path, tags, addPrivateTag);
}

void writeWideText(const std::filesystem::path& path, std::uint64_t tags) {
    writePrivateTags(path, tags, addTextOrNumber);
}

void writeBigArrays(const std::filesystem::path& path, std::uint64_t strips, std::uint64_t bytes) {
    std::vector<std::uint64_t> offsets(strips);
    std::vector<std::uint64_t> sizes(strips);
    std::uint64_t offset = std::uint64_t{1} << 32;
    for (std::uint64_t i = 0; i < strips; ++i) {
        offsets[i] = offset;
        sizes[i] = 600 + i % 401;
        offset += sizes[i];
    }
    std::string content(bytes, '\0');
    for (std::uint64_t i = 0; i < bytes; ++i) {
        content[i] = static_cast<char>(i * 31 >> 3);
    }
    Directory page(ByteOrder::Little, Layout::BigTiff);
    page.number(254, Type::Long, 0)
        .number(256, Type::Short, 512)
        .number(257, Type::Long, strips)
        .number(258, Type::Short, 16)
        .number(259, Type::Short, 5)
        .number(262, Type::Short, 1)
        .numbers(273, Type::Long8, offsets)
        .number(277, Type::Short, 1)
        .number(278, Type::Short, 1)
        .numbers(279, Type::Long8, sizes)
        .number(296, Type::Short, 2)
        .bytes(65000, Type::Undefined, content);
    writePage(path, page, Layout::BigTiff);
}

}  // namespace bench
