#include "samples/bytes.h"

namespace samples {

void ByteWriter::number(std::uint64_t value, unsigned width) {
    for (unsigned i = 0; i < width; ++i) {
        const unsigned place = order_ == ByteOrder::Little ? i : width - 1 - i;
        bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * place)));
    }
}

void ByteWriter::text(std::string_view characters) {
    bytes_.insert(bytes_.end(), characters.begin(), characters.end());
}

void ByteWriter::bytes(const Bytes& bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

void ByteWriter::padTo(std::size_t position) {
    bytes_.resize(position);
}

}  // namespace samples
