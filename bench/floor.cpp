// The least that any reader of all values could do: this program reads the same bytes with stdio
// and turns every value into doubles in one reused buffer. It builds no result, looks up no names
// and checks nothing, because its inputs are sound.
//   floor [--repeat N] FILE... | @LIST

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "bench/arguments.h"
#include "bench/totals.h"

namespace {

/// A stream that knows its position, because a seek costs a system call even to where it stands.
class Stream {
  public:
    explicit Stream(const char* path) : file_(std::fopen(path, "rb")) {
        if (file_ == nullptr) {
            fail(path);
        }
        static std::array<char, 4096> buffer;
        if (std::setvbuf(file_, buffer.data(), _IOFBF, buffer.size()) != 0) {
            fail("no buffer");
        }
    }
    ~Stream() { static_cast<void>(std::fclose(file_)); }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    [[nodiscard]] std::uint64_t position() const { return position_; }
    void moveTo(std::uint64_t target) {
        constexpr std::uint64_t shortGap = 256;
        if (target > position_ && target - position_ <= shortGap) {
            // The array needs no value, because nobody looks at what is read into it.
            // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
            std::array<unsigned char, shortGap> passedOver;
            read(passedOver.data(), target - position_);
        } else if (target != position_) {
            position_ = target;
            if (std::fseek(file_, static_cast<long>(target), SEEK_SET) != 0) {
                fail("cannot seek");
            }
        }
    }
    void read(void* bytes, std::size_t count) {
        if (::fread_unlocked(bytes, 1, count, file_) != count) {
            fail("short read");
        }
        position_ += count;
    }

  private:
    [[noreturn]] static void fail(const char* what) {
        static_cast<void>(std::fprintf(stderr, "floor: %s\n", what));
        std::exit(1);
    }

    std::FILE* file_;
    std::uint64_t position_ = 0;
};

/// The reused buffer, which has room for the largest value so far.
class Numbers {
  public:
    double* room(std::uint64_t count) {
        if (count > size_) {
            numbers_.reset();
            numbers_ = std::make_unique_for_overwrite<double[]>(count);
            size_ = count;
        }
        return numbers_.get();
    }

  private:
    std::unique_ptr<double[]> numbers_;
    std::uint64_t size_ = 0;
};

Numbers numbers;

template <class Element, bool Swap>
Element load(const unsigned char* bytes) {
    std::array<unsigned char, sizeof(Element)> element{};
    std::memcpy(element.data(), bytes, sizeof(Element));
    if constexpr (Swap && sizeof(Element) > 1) {
        std::reverse(element.begin(), element.end());
    }
    return std::bit_cast<Element>(element);
}

template <class Element, bool Swap>
void convert(const unsigned char* bytes, std::uint64_t count, double* out) {
    for (std::uint64_t i = 0; i < count; ++i) {
        out[i] = static_cast<double>(load<Element, Swap>(bytes + i * sizeof(Element)));
    }
}

template <class Half, bool Swap>
void divide(const unsigned char* bytes, std::uint64_t count, double* out) {
    for (std::uint64_t i = 0; i < count; ++i) {
        out[i] = static_cast<double>(load<Half, Swap>(bytes + i * 8)) /
                 static_cast<double>(load<Half, Swap>(bytes + i * 8 + 4));
    }
}

struct FieldType {
    unsigned width;
    void (*convert)(const unsigned char* bytes, std::uint64_t count, double* out);
};

/// The types of values, indexed by their codes.
template <bool Swap>
constexpr std::array<FieldType, 19> fieldTypes{{
    {0, nullptr},
    {1, convert<std::uint8_t, Swap>},   // BYTE
    {1, convert<std::uint8_t, Swap>},   // ASCII
    {2, convert<std::uint16_t, Swap>},  // SHORT
    {4, convert<std::uint32_t, Swap>},  // LONG
    {8, divide<std::uint32_t, Swap>},   // RATIONAL
    {1, convert<std::int8_t, Swap>},    // SBYTE
    {1, convert<std::uint8_t, Swap>},   // UNDEFINED
    {2, convert<std::int16_t, Swap>},   // SSHORT
    {4, convert<std::int32_t, Swap>},   // SLONG
    {8, divide<std::int32_t, Swap>},    // SRATIONAL
    {4, convert<float, Swap>},          // FLOAT
    {8, convert<double, Swap>},         // DOUBLE
    {4, convert<std::uint32_t, Swap>},  // IFD
    {0, nullptr},
    {0, nullptr},
    {8, convert<std::uint64_t, Swap>},  // LONG8
    {8, convert<std::int64_t, Swap>},   // SLONG8
    {8, convert<std::uint64_t, Swap>},  // IFD8
}};

constexpr bool isPointer(unsigned tag) {
    return tag == 330 || tag == 34665 || tag == 34853 || tag == 40965;
}

// The types are spelled out: with auto, sums and products of a classic file's numbers would have 32
// bits.
// NOLINTBEGIN(modernize-use-auto)

/// Reads one structure in one byte order: a classic one, with an Offset of 4 and a Count of 2
/// bytes, or that of a BigTIFF, with 8 bytes for both.
template <bool Swap, class Offset, class Count>
class Structure {
  public:
    Structure(Stream& stream, std::uint64_t base, bench::Totals& totals)
        : stream_(stream), base_(base), totals_(totals) {}

    void readChain() {
        std::array<unsigned char, sizeof(Offset)> first{};
        stream_.read(first.data(), first.size());
        std::uint64_t next = load<Offset, Swap>(first.data());
        while (next != 0) {
            next = readDirectory(next);
        }
    }

  private:
    static constexpr std::size_t entrySize = 4 + 2 * sizeof(Offset);

    std::uint64_t readDirectory(std::uint64_t position) {
        stream_.moveTo(base_ + position);
        std::array<unsigned char, sizeof(Count)> countField{};
        stream_.read(countField.data(), countField.size());
        const std::size_t count = load<Count, Swap>(countField.data());
        // A directory that this one points to is read after it, so its entries may go on top.
        const std::size_t start = entries_.size();
        entries_.resize(start + count * entrySize + sizeof(Offset));
        stream_.read(&entries_[start], count * entrySize + sizeof(Offset));
        bool hasPointers = false;
        for (std::size_t i = 0; i < count; ++i) {
            const unsigned char* const entry = &entries_[start + i * entrySize];
            hasPointers = isPointer(load<std::uint16_t, Swap>(entry)) || hasPointers;
            readValue(entry);
        }
        ++totals_.directories;
        for (std::size_t i = 0; hasPointers && i < count; ++i) {
            const unsigned char* const entry = &entries_[start + i * entrySize];
            if (isPointer(load<std::uint16_t, Swap>(entry))) {
                --totals_.values;
                readDirectory(load<Offset, Swap>(entry + 4 + sizeof(Offset)));
            }
        }
        const std::uint64_t next = load<Offset, Swap>(&entries_[start + count * entrySize]);
        entries_.resize(start);
        return next;
    }

    void readValue(const unsigned char* entry) {
        const FieldType& type = fieldTypes<Swap>[load<std::uint16_t, Swap>(entry + 2)];
        const std::uint64_t count = load<Offset, Swap>(entry + 4);
        const unsigned char* const field = entry + 4 + sizeof(Offset);
        double* const out = numbers.room(count);
        ++totals_.values;
        if (count * type.width <= sizeof(Offset)) {
            type.convert(field, count, out);
        } else {
            stream_.moveTo(base_ + load<Offset, Swap>(field));
            convertFromStream(type, count, out);
        }
        bench::keep(out);
    }

    void convertFromStream(const FieldType& type, std::uint64_t count, double* out) {
        // Clearing so many bytes for each value would raise the floor.
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
        std::array<unsigned char, 16384> bytes;
        while (count != 0) {
            const std::uint64_t part = std::min<std::uint64_t>(count, bytes.size() / type.width);
            stream_.read(bytes.data(), part * type.width);
            type.convert(bytes.data(), part, out);
            out += part;
            count -= part;
        }
    }

    Stream& stream_;
    std::uint64_t base_;
    bench::Totals& totals_;
    std::vector<unsigned char>& entries_ = entryBlock();

    static std::vector<unsigned char>& entryBlock() {
        static std::vector<unsigned char> block;
        return block;
    }
};

// NOLINTEND(modernize-use-auto)

/// Reads a structure from the version field of its header on.
template <bool Swap>
void readStructure(Stream& stream, std::uint64_t base, bench::Totals& totals) {
    std::array<unsigned char, 2> version{};
    stream.read(version.data(), version.size());
    if (load<std::uint16_t, Swap>(version.data()) == 43) {
        stream.moveTo(base + 8);
        Structure<Swap, std::uint64_t, std::uint64_t>(stream, base, totals).readChain();
    } else {
        Structure<Swap, std::uint32_t, std::uint16_t>(stream, base, totals).readChain();
    }
}

/// Moves a JPEG's stream from the end of its start-of-image marker to the TIFF header in its EXIF
/// segment, which follows the segment's identifier.
void moveToExif(Stream& stream) {
    while (true) {
        std::array<unsigned char, 10> start{};  // marker, length, identifier
        const std::uint64_t segment = stream.position();
        stream.read(start.data(), start.size());
        if (start[1] == 0xE1 && std::memcmp(&start[4], "Exif\0", 6) == 0) {
            return;
        }
        stream.moveTo(segment + 2 + load<std::uint16_t, true>(&start[2]));
    }
}

void readFile(const std::string& file, bench::Totals& totals) {
    Stream stream(file.c_str());
    std::array<unsigned char, 2> mark{};
    stream.read(mark.data(), mark.size());
    std::uint64_t base = 0;
    if (mark[0] == 0xFF) {
        moveToExif(stream);
        base = stream.position();
        stream.read(mark.data(), mark.size());
    }
    if (mark[0] == 'M') {
        readStructure<true>(stream, base, totals);
    } else {
        readStructure<false>(stream, base, totals);
    }
}

}  // namespace

int main(int count, char** words) {
    const bench::Arguments arguments(count, words);
    bench::Totals totals;
    arguments.forEachFile([&totals](const std::string& file) { readFile(file, totals); });
    totals.print();
    return 0;
}
