#include "corvinex/value.h"

#include <span>

namespace corvinex::inspect {

namespace {

template <class Element>
std::span<const Element> view(std::span<const std::byte> bytes, std::size_t size) noexcept {
    // The bytes come from new and hold such elements, in the machine's order.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
    return {reinterpret_cast<const Element*>(bytes.data()), size};
}

}  // namespace

Elements Value::elements() const noexcept {
    switch (static_cast<FieldType>(typeCode_)) {
        case FieldType::Ascii:
        case FieldType::Utf8: {
            const std::span<const char> characters = view<char>(bytes(), size_);
            return std::string_view(characters.data(), characters.size());
        }
        case FieldType::Short:
            return view<std::uint16_t>(bytes(), size_);
        case FieldType::Long:
        case FieldType::Ifd:
            return view<std::uint32_t>(bytes(), size_);
        case FieldType::Rational:
            return view<Rational>(bytes(), size_);
        case FieldType::SByte:
            return view<std::int8_t>(bytes(), size_);
        case FieldType::SShort:
            return view<std::int16_t>(bytes(), size_);
        case FieldType::SLong:
            return view<std::int32_t>(bytes(), size_);
        case FieldType::SRational:
            return view<SRational>(bytes(), size_);
        case FieldType::Float:
            return view<float>(bytes(), size_);
        case FieldType::Double:
            return view<double>(bytes(), size_);
        case FieldType::Long8:
        case FieldType::Ifd8:
            return view<std::uint64_t>(bytes(), size_);
        case FieldType::SLong8:
            return view<std::int64_t>(bytes(), size_);
        case FieldType::Byte:
        case FieldType::Undefined:
            break;
    }
    return view<std::uint8_t>(bytes(), size_);
}

}  // namespace corvinex::inspect
