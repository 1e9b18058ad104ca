#include "tests/support/tiff_builder.h"

#include <algorithm>
#include <bit>
#include <stdexcept>

#include "vocabulary/field_types.h"

namespace test {

ByteWriter& ByteWriter::number(std::uint64_t value, std::size_t width) {
    bytes_.resize(bytes_.size() + width);
    put(bytes_.size() - width, value, width);
    return *this;
}

ByteWriter& ByteWriter::text(std::string_view text) {
    bytes_.insert(bytes_.end(), text.begin(), text.end());
    return *this;
}

ByteWriter& ByteWriter::padTo(std::size_t position) {
    bytes_.resize(std::max(bytes_.size(), position));
    return *this;
}

void ByteWriter::put(std::size_t position, std::uint64_t value, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) {
        const std::size_t shift = order_ == Order::Little ? i : width - 1 - i;
        bytes_.at(position + i) = static_cast<unsigned char>(value >> (8 * shift));
    }
}

namespace {

/// Bytes of one number: in a rational, of each half. Codes that are no type have bytes.
std::size_t widthOf(Type type) {
    if (!corvinex::isKnownTypeCode(type) || corvinex::getElementWidth(type) == 0) {
        return 1;
    }
    const std::uint64_t width = corvinex::getElementWidth(type);
    return static_cast<std::size_t>(type == RATIONAL || type == SRATIONAL ? width / 2 : width);
}

}  // namespace

Field numbers(std::uint16_t tag, Type type, Numbers values) {
    const std::size_t count = values.size();
    return {tag, type, count, widthOf(type), std::move(values), {}, {}};
}

Field number(std::uint16_t tag, Type type, std::uint64_t value) {
    return numbers(tag, type, {value});
}

Field shorts(std::uint16_t tag, Numbers values) {
    return numbers(tag, SHORT, std::move(values));
}

Field longs(std::uint16_t tag, Numbers values) {
    return numbers(tag, LONG, std::move(values));
}

Field rationals(std::uint16_t tag, Type type, Rationals values) {
    Field field{tag, type, values.size(), 4, {}, {}, {}};
    for (const auto& [numerator, denominator] : values) {
        field.elements.push_back(static_cast<std::uint64_t>(numerator));
        field.elements.push_back(static_cast<std::uint64_t>(denominator));
    }
    return field;
}

Field floats(std::uint16_t tag, std::vector<float> values) {
    Numbers elements;
    for (const float value : values) {
        elements.push_back(std::bit_cast<std::uint32_t>(value));
    }
    return numbers(tag, FLOAT, std::move(elements));
}

Field doubles(std::uint16_t tag, std::vector<double> values) {
    Numbers elements;
    for (const double value : values) {
        elements.push_back(std::bit_cast<std::uint64_t>(value));
    }
    return numbers(tag, DOUBLE, std::move(elements));
}

Field ascii(std::uint16_t tag, std::string_view characters) {
    Numbers elements;
    for (const char character : characters) {
        elements.push_back(static_cast<unsigned char>(character));
    }
    return numbers(tag, ASCII, std::move(elements));
}

Field text(std::uint16_t tag, std::string_view characters) {
    return ascii(tag, std::string(characters) + '\0');
}

Field at(std::uint16_t tag, std::uint16_t type, std::uint64_t count, std::uint64_t offset) {
    return {tag, type, count, 0, {}, {}, offset};
}

Field pointers(std::uint16_t tag, Type type, std::vector<std::size_t> directories) {
    Field field{tag, type, directories.size(), widthOf(type), {}, {}, {}};
    field.elements.resize(directories.size());
    field.targets = std::move(directories);
    return field;
}

std::size_t TiffBuilder::add(std::vector<Field> fields) {
    directories_.push_back({end_, std::move(fields), {}, {}});
    end_ += blockSize(directories_.back());
    return directories_.size() - 1;
}

TiffBuilder& TiffBuilder::chain(std::vector<std::size_t> directories) {
    chain_ = std::move(directories);
    return *this;
}

TiffBuilder& TiffBuilder::next(std::size_t directory, std::uint64_t offset) {
    directories_.at(directory).next = offset;
    return *this;
}

TiffBuilder& TiffBuilder::nextDirectory(std::size_t directory, std::size_t target) {
    directories_.at(directory).nextDirectory = target;
    return *this;
}

TiffBuilder& TiffBuilder::first(std::uint64_t offset) {
    first_ = offset;
    return *this;
}

std::size_t TiffBuilder::outsideSize(const Field& field) const {
    const std::size_t size = field.elements.size() * field.width;
    return field.offset || size <= offsetSize() ? 0 : size;
}

std::size_t TiffBuilder::blockSize(const Directory& directory) const {
    std::size_t size = countSize() + directory.fields.size() * entrySize() + offsetSize();
    for (const Field& field : directory.fields) {
        size += outsideSize(field);
    }
    return size + size % 2;
}

std::uint64_t TiffBuilder::positionOf(std::size_t directory) const {
    return directory == directories_.size() ? end_ : directories_.at(directory).position;
}

std::uint64_t TiffBuilder::entryOf(std::size_t directory, std::size_t entry) const {
    return positionOf(directory) + countSize() + entry * entrySize();
}

std::uint64_t TiffBuilder::nextFieldOf(std::size_t directory) const {
    return entryOf(directory, directories_.at(directory).fields.size());
}

std::uint64_t TiffBuilder::valueOf(std::size_t directory, std::size_t entry) const {
    std::uint64_t position = nextFieldOf(directory) + offsetSize();
    for (std::size_t i = 0; i < entry; ++i) {
        position += outsideSize(directories_.at(directory).fields.at(i));
    }
    return position;
}

std::uint64_t TiffBuilder::nextOf(std::size_t directory) const {
    const Directory& source = directories_.at(directory);
    if (source.next) {
        return *source.next;
    }
    if (source.nextDirectory) {
        return positionOf(*source.nextDirectory);
    }
    const auto link = std::find(chain_.begin(), chain_.end(), directory);
    return link == chain_.end() || link + 1 == chain_.end() ? 0 : positionOf(*(link + 1));
}

void TiffBuilder::writeHeader(ByteWriter& writer) const {
    writer.text(order_ == Order::Little ? "II" : "MM");
    if (layout_ == Layout::Big) {
        writer.number(43, 2).number(8, 2).number(0, 2);
    } else {
        writer.number(42, 2);
    }
    const std::uint64_t firstOffset =
        first_ ? *first_ : (directories_.empty() ? 0 : positionOf(chain_.front()));
    writer.number(firstOffset, offsetSize());
}

void TiffBuilder::writeElements(ByteWriter& writer, const Field& field) const {
    for (std::size_t i = 0; i < field.elements.size(); ++i) {
        writer.number(field.targets.empty() ? field.elements[i] : positionOf(field.targets.at(i)),
                      field.width);
    }
}

void TiffBuilder::writeEntries(ByteWriter& writer, std::size_t directory) const {
    const auto& fields = directories_[directory].fields;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const Field& field = fields[i];
        writer.number(field.tag, 2).number(field.type, 2).number(field.count, offsetSize());
        const std::size_t end = writer.size() + offsetSize();
        if (field.offset) {
            writer.number(*field.offset, offsetSize());
        } else if (outsideSize(field) != 0) {
            writer.number(valueOf(directory, i), offsetSize());
        } else {
            writeElements(writer, field);
        }
        writer.padTo(end);
    }
}

Bytes TiffBuilder::bytes() const {
    ByteWriter writer(order_);
    writeHeader(writer);
    for (std::size_t i = 0; i < directories_.size(); ++i) {
        writer.padTo(positionOf(i));
        writer.number(directories_[i].fields.size(), countSize());
        writeEntries(writer, i);
        writer.number(nextOf(i), offsetSize());
        for (const Field& field : directories_[i].fields) {
            if (outsideSize(field) != 0) {
                writeElements(writer, field);
            }
        }
    }
    return writer.bytes();
}

JpegWithExif jpegWithExif(const Bytes& tiff) {
    ByteWriter writer(Order::Big);
    writer.number(0xFFD8, 2).number(0xFFE1, 2);
    writer.number(std::min<std::size_t>(tiff.size() + 8, 0xFFFF), 2);
    writer.text(std::string_view("Exif\0\0", 6));
    const std::size_t headerPosition = writer.size();
    Bytes bytes = writer.bytes();
    bytes.insert(bytes.end(), tiff.begin(), tiff.end());
    bytes.insert(bytes.end(), {0xFF, 0xD9});
    return {std::move(bytes), headerPosition};
}

}  // namespace test
