#include "fuzz/value_walk.h"

#include <bit>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/values/value.h"

namespace fuzz {

namespace {

class Digest {
  public:
    void add(std::uint64_t number) noexcept { value_ = (std::rotl(value_, 5) ^ number) * factor; }
    [[nodiscard]] std::uint64_t value() const noexcept { return value_; }

  private:
    static constexpr std::uint64_t factor = 0x9E3779B97F4A7C15;
    std::uint64_t value_ = 1;
};

void addStruct(Digest& digest, const zxArray& value) {
    const auto names = host::fieldNamesOf(value);
    for (const std::string& name : names) {
        require(!name.empty(), "a field without a name");
        for (const char character : name) {
            digest.add(static_cast<unsigned char>(character));
        }
    }
    const host::Size size = host::sizeOf(value);
    for (std::size_t element = 0; element < size.rows * size.columns; ++element) {
        for (std::size_t field = 0; field < names.size(); ++field) {
            digest.add(digestOf(host::fieldAt(value, element, field)));
        }
    }
}

}  // namespace

std::uint64_t digestOf(const zxArray* value) {
    if (value == nullptr) {
        return 0;
    }
    Digest digest;
    const host::Size size = host::sizeOf(*value);
    digest.add(size.rows);
    digest.add(size.columns);
    switch (host::classOf(*value)) {
        case host::ValueClass::Double:
            for (const double number : host::doublesOf(*value)) {
                digest.add(std::bit_cast<std::uint64_t>(number));
            }
            break;
        case host::ValueClass::Uint8:
            for (const unsigned char byte : host::bytesOf(*value)) {
                digest.add(byte);
            }
            break;
        case host::ValueClass::Char:
        case host::ValueClass::String:
            for (const char16_t unit : host::textOf(*value)) {
                digest.add(unit);
            }
            break;
        case host::ValueClass::Cell:
            for (std::size_t cell = 0; cell < size.rows * size.columns; ++cell) {
                digest.add(digestOf(host::cellAt(*value, cell)));
            }
            break;
        case host::ValueClass::Struct:
            addStruct(digest, *value);
            break;
    }
    return digest.value();
}

void require(bool condition, const char* what) {
    if (!condition) {
        static_cast<void>(std::fprintf(stderr, "fuzz: %s\n", what));
        std::abort();
    }
}

}  // namespace fuzz
