#include "tests/agreement/generated_files.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace test {

namespace {

/// Tags of pages, photos and positions, those with words, those with defaults, those that the
/// result changes, and some without a name.
constexpr std::array<std::uint16_t, 84> tags{
    0,     1,     2,     3,     4,     5,     6,     7,     11,    29,    254,   255,
    256,   257,   258,   259,   262,   263,   265,   266,   269,   270,   271,   272,
    273,   274,   277,   278,   279,   280,   281,   282,   283,   284,   285,   290,
    291,   296,   297,   305,   306,   315,   317,   318,   320,   322,   323,   324,
    325,   332,   333,   338,   339,   340,   347,   513,   514,   529,   530,   531,
    700,   33432, 33434, 33437, 33550, 33922, 34016, 34675, 34735, 34736, 34737, 34850,
    36864, 36867, 37121, 37377, 37380, 37510, 37724, 40961, 41987, 42016, 51179, 60000};
constexpr std::array<std::uint16_t, 4> pointerTags{330, 34665, 34853, 40965};
constexpr std::array<std::uint16_t, 16> knownTypes{
    BYTE,  ASCII,     SHORT, LONG,   RATIONAL, SBYTE, UNDEFINED, SSHORT,
    SLONG, SRATIONAL, FLOAT, DOUBLE, IFD,      LONG8, SLONG8,    IFD8};
constexpr std::array<std::uint16_t, 6> unknownTypes{0, 14, 15, 19, 129, 65535};
constexpr std::array<std::uint64_t, 12> counts{1, 1, 1, 1, 2, 2, 3, 4, 5, 8, 9, 33};
constexpr std::array<std::uint64_t, 8> hugeCounts{
    0, 0, 200, 65536, 0x20000001, 0x80000000, 0xFFFFFFFF, 0x2000000000000001};
constexpr std::array<std::uint64_t, 12> oddNumbers{0,
                                                   1,
                                                   2,
                                                   7,
                                                   0x7F,
                                                   0x80,
                                                   0xFFFF,
                                                   0x8000,
                                                   0x7FC00000,
                                                   0xFFFFFFFF,
                                                   0x8000000000000000,
                                                   0x7FF8000000000000};

/// The elements' bytes as TiffBuilder writes them: halves of rationals each by itself.
struct Width {
    std::size_t bytes;
    std::size_t parts;
};

Width widthOf(std::uint16_t type) {
    switch (type) {
        case SHORT:
        case SSHORT:
            return {2, 1};
        case LONG:
        case SLONG:
        case FLOAT:
        case IFD:
            return {4, 1};
        case RATIONAL:
        case SRATIONAL:
            return {4, 2};
        case DOUBLE:
        case LONG8:
        case SLONG8:
        case IFD8:
            return {8, 1};
        default:
            return {1, 1};
    }
}

class Generator {
  public:
    /// The distributions of the standard library differ from one to the next, the engine does not.
    explicit Generator(std::uint64_t number) : engine_(number) {}

    GeneratedFile make();

  private:
    std::uint64_t below(std::uint64_t end) { return engine_() % end; }
    bool isOneIn(std::uint64_t many) { return below(many) == 0; }
    template <class Row>
    Row oneOf(std::span<const Row> rows) {
        return rows[below(rows.size())];
    }
    template <class Row, std::size_t size>
    Row oneOf(const std::array<Row, size>& rows) {
        return oneOf(std::span<const Row>(rows));
    }

    std::uint16_t makeTag();
    std::uint64_t makeElement(std::uint16_t type);
    Field makeField();
    Field makeValue(std::uint16_t tag);
    Field makeMisplaced(std::uint16_t tag);
    Field makePointers();
    TiffBuilder makeStructure(Order order, Layout layout);
    void bendChain(TiffBuilder& file);
    void changeBytes(Bytes& bytes);

    std::mt19937_64 engine_;
    std::size_t directories_ = 0;
    std::size_t chained_ = 0;  // the first ones, which are the main chain
};

std::uint16_t Generator::makeTag() {
    return isOneIn(12) ? static_cast<std::uint16_t>(below(0x10000)) : oneOf(tags);
}

std::uint64_t Generator::makeElement(std::uint16_t type) {
    if (type == ASCII) {
        constexpr std::array<std::uint64_t, 8> odd{0, 0, ' ', '\n', 0x1B, 0x80, 0xC3, 0xFC};
        return isOneIn(8) ? oneOf(odd) : 'a' + below(26);
    }
    return isOneIn(2) ? oneOf(oddNumbers) : isOneIn(2) ? below(64) : engine_();
}

Field Generator::makeValue(std::uint16_t tag) {
    const std::uint16_t type = isOneIn(20) ? oneOf(unknownTypes) : oneOf(knownTypes);
    const std::uint64_t count = isOneIn(40) ? 200 : oneOf(counts);
    const Width width = widthOf(type);
    Field field;
    field.tag = tag;
    field.type = type;
    field.count = count;
    field.width = width.bytes;
    for (std::uint64_t i = 0; i < count * width.parts; ++i) {
        field.elements.push_back(makeElement(type));
    }
    if (type == ASCII && !isOneIn(4)) {
        field.elements.back() = 0;
    }
    return field;
}

/// A value at a place of another, at the end of the file, or past it.
Field Generator::makeMisplaced(std::uint16_t tag) {
    const std::uint64_t offset = isOneIn(4) ? engine_() >> below(64) : below(1200);
    const std::uint64_t count = isOneIn(3) ? oneOf(hugeCounts) : oneOf(counts);
    return at(tag, oneOf(knownTypes), count, offset);
}

Field Generator::makePointers() {
    const std::uint16_t tag = oneOf(pointerTags);
    if (isOneIn(8)) {
        return isOneIn(2) ? makeValue(tag) : makeMisplaced(tag);
    }
    constexpr std::array<Type, 6> types{LONG, LONG, LONG, IFD, SHORT, LONG8};
    std::vector<std::size_t> targets;
    do {
        // Most of those that the chain does not hold.
        const bool isBehindChain = chained_ < directories_ && !isOneIn(4);
        targets.push_back(isBehindChain ? chained_ + below(directories_ - chained_)
                                        : below(directories_));
    } while (tag == 330 && isOneIn(2));
    return pointers(tag, oneOf(types), std::move(targets));
}

Field Generator::makeField() {
    if (isOneIn(9)) {
        return makePointers();
    }
    const std::uint16_t tag = makeTag();
    return isOneIn(8) ? makeMisplaced(tag) : makeValue(tag);
}

void Generator::bendChain(TiffBuilder& file) {
    for (std::size_t directory = 0; directory < directories_; ++directory) {
        if (isOneIn(10)) {
            file.nextDirectory(directory, below(directories_));
        } else if (isOneIn(20)) {
            file.next(directory, isOneIn(2) ? below(1200) : engine_() >> below(64));
        }
    }
}

TiffBuilder Generator::makeStructure(Order order, Layout layout) {
    TiffBuilder file(order, layout);
    directories_ = 1 + below(5);
    chained_ = 1 + below(directories_);
    for (std::size_t i = 0; i < directories_; ++i) {
        std::vector<Field> fields(isOneIn(20) ? 0 : 1 + below(12));
        std::ranges::generate(fields, [this] { return makeField(); });
        if (!isOneIn(4)) {
            std::ranges::stable_sort(fields, {}, &Field::tag);
        }
        file.add(std::move(fields));
    }
    std::vector<std::size_t> chain(chained_);
    std::iota(chain.begin(), chain.end(), std::size_t{0});
    file.chain(std::move(chain));
    return file;
}

void Generator::changeBytes(Bytes& bytes) {
    constexpr std::size_t signature = 4;
    for (std::uint64_t changes = 1 + below(3); changes > 0; --changes) {
        bytes[signature + below(bytes.size() - signature)] = static_cast<unsigned char>(engine_());
    }
}

GeneratedFile Generator::make() {
    const Order order = isOneIn(2) ? Order::Little : Order::Big;
    const Layout layout = isOneIn(2) ? Layout::Classic : Layout::Big;
    TiffBuilder file = makeStructure(order, layout);
    GeneratedFile result;
    if (layout == Layout::Classic && isOneIn(4)) {
        // No chain comes back here: in a JPEG the module would follow it for ever, should its
        // directories yield no field.
        JpegWithExif jpeg = jpegWithExif(file.bytes());
        result = {std::move(jpeg.bytes), jpeg.headerPosition};
    } else {
        bendChain(file);
        result.bytes = file.bytes();
        if (isOneIn(4)) {
            changeBytes(result.bytes);
        }
    }
    if (isOneIn(16)) {
        result.bytes.resize(result.bytes.size() - below(result.bytes.size() / 2));
    }
    return result;
}

}  // namespace

GeneratedFile generateFile(std::uint64_t number) {
    return Generator(number).make();
}

}  // namespace test
