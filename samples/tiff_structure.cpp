#include "samples/tiff_structure.h"

#include <bit>
#include <utility>

namespace samples {
namespace {

constexpr std::size_t headerSize = 8;
constexpr std::size_t countSize = 2;
constexpr std::size_t entrySize = 12;
constexpr std::size_t offsetSize = 4;

std::size_t even(std::size_t position) {
    return position + position % 2;
}

std::size_t valueSize(const Field& field) {
    return field.units.size() * field.unitWidth;
}

std::size_t outsideSize(const Field& field) {
    const std::size_t size = valueSize(field);
    return size > offsetSize ? even(size) : 0;
}

std::size_t entriesSize(const std::vector<Field>& fields) {
    return countSize + fields.size() * entrySize + offsetSize;
}

Field field(std::uint16_t tag, FieldType type, std::size_t count, unsigned unitWidth,
            std::vector<std::uint64_t> units) {
    Field made;
    made.tag = tag;
    made.type = static_cast<std::uint16_t>(type);
    made.count = static_cast<std::uint32_t>(count);
    made.unitWidth = unitWidth;
    made.units = std::move(units);
    return made;
}

}  // namespace

Field bytes(std::uint16_t tag, FieldType type, std::string_view values) {
    std::vector<std::uint64_t> units;
    for (const char value : values) {
        units.push_back(static_cast<unsigned char>(value));
    }
    return field(tag, type, values.size(), 1, std::move(units));
}

Field text(std::uint16_t tag, std::string_view characters) {
    Field made = bytes(tag, FieldType::Ascii, characters);
    made.units.push_back(0);
    ++made.count;
    return made;
}

Field shorts(std::uint16_t tag, std::vector<std::uint64_t> values) {
    const std::size_t count = values.size();
    return field(tag, FieldType::Short, count, 2, std::move(values));
}

Field longs(std::uint16_t tag, std::vector<std::uint64_t> values) {
    const std::size_t count = values.size();
    return field(tag, FieldType::Long, count, 4, std::move(values));
}

Field rationals(std::uint16_t tag, FieldType type,
                const std::vector<std::pair<std::int64_t, std::int64_t>>& values) {
    std::vector<std::uint64_t> units;
    for (const auto& [numerator, denominator] : values) {
        units.push_back(static_cast<std::uint64_t>(numerator));
        units.push_back(static_cast<std::uint64_t>(denominator));
    }
    return field(tag, type, values.size(), 4, std::move(units));
}

Field doubles(std::uint16_t tag, const std::vector<double>& values) {
    std::vector<std::uint64_t> units;
    units.reserve(values.size());
    for (const double value : values) {
        units.push_back(std::bit_cast<std::uint64_t>(value));
    }
    return field(tag, FieldType::Double, values.size(), 8, std::move(units));
}

Field directoryAt(std::uint16_t tag, std::size_t directory) {
    Field made = longs(tag, {directory});
    made.unit = Field::Unit::Directory;
    return made;
}

Field blockAt(std::uint16_t tag, std::size_t block) {
    Field made = longs(tag, {block});
    made.unit = Field::Unit::Block;
    return made;
}

Field claimed(std::uint16_t tag, std::uint16_t type, std::uint32_t count, std::uint32_t offset) {
    Field made;
    made.tag = tag;
    made.type = type;
    made.count = count;
    made.claimedOffset = offset;
    return made;
}

std::size_t TiffStructure::add(std::vector<Field> fields) {
    directories_.push_back({std::move(fields), std::nullopt, 0});
    return directories_.size() - 1;
}

void TiffStructure::fill(std::size_t directory, std::vector<Field> fields) {
    directories_.at(directory).fields = std::move(fields);
}

std::size_t TiffStructure::addBlock(Bytes block) {
    blocks_.push_back(std::move(block));
    return blocks_.size() - 1;
}

void TiffStructure::follow(std::size_t directory, std::size_t next) {
    directories_.at(directory).next = next;
}

void TiffStructure::claimNext(std::size_t directory, std::uint32_t offset) {
    directories_.at(directory).claimedNext = offset;
}

Bytes TiffStructure::build() const {
    const Plan where = plan();
    ByteWriter out(order_);
    out.text(order_ == ByteOrder::Little ? "II" : "MM");
    out.number(42, 2);
    out.number(headerSize, offsetSize);
    for (const Directory& directory : directories_) {
        write(out, directory, where);
    }
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
        out.padTo(where.blocks[i]);
        out.bytes(blocks_[i]);
    }
    return std::move(out).take();
}

TiffStructure::Plan TiffStructure::plan() const {
    Plan made;
    std::size_t position = headerSize;
    for (const Directory& directory : directories_) {
        made.directories.push_back(position);
        position += entriesSize(directory.fields);
        for (const Field& field : directory.fields) {
            position += outsideSize(field);
        }
    }
    for (const Bytes& block : blocks_) {
        made.blocks.push_back(position);
        position = even(position + block.size());
    }
    return made;
}

void TiffStructure::write(ByteWriter& out, const Directory& directory, const Plan& plan) const {
    std::size_t outside = out.size() + entriesSize(directory.fields);
    ByteWriter values(order_);
    out.number(directory.fields.size(), countSize);
    for (const Field& field : directory.fields) {
        out.number(field.tag, 2);
        out.number(field.type, 2);
        out.number(field.count, 4);
        const std::size_t valueField = out.size();
        if (field.claimedOffset) {
            out.number(*field.claimedOffset, offsetSize);
            continue;
        }
        const bool fits = outsideSize(field) == 0;
        if (!fits) {
            out.number(outside + values.size(), offsetSize);
        }
        ByteWriter& target = fits ? out : values;
        for (std::uint64_t unit : field.units) {
            if (field.unit == Field::Unit::Directory) {
                unit = plan.directories.at(unit);
            } else if (field.unit == Field::Unit::Block) {
                unit = plan.blocks.at(unit);
            }
            target.number(unit, field.unitWidth);
        }
        out.padTo(valueField + offsetSize);
        values.padTo(even(values.size()));
    }
    out.number(directory.next ? plan.directories.at(*directory.next) : directory.claimedNext,
               offsetSize);
    out.bytes(std::move(values).take());
}

}  // namespace samples
