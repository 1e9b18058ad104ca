#include "corvinex/entry.h"

#include <algorithm>

#include "corvinex/directory.h"
#include "inspect/field_type.h"
#include "inspect/file_content.h"
#include "inspect/stored_value.h"
#include "vocabulary/registry.h"
#include "vocabulary/tag_table.h"

namespace corvinex::inspect {

namespace {

const char* fieldNameOf(DirectoryKind kind, std::uint16_t number) noexcept {
    switch (kind) {
        case DirectoryKind::Gps:
            return findGpsTagName(number);
        case DirectoryKind::Interop:
            return findInteropTagName(number);
        case DirectoryKind::Main:
        case DirectoryKind::Sub:
        case DirectoryKind::Exif:
            break;
    }
    return findTag(number).name;
}

}  // namespace

std::string_view Entry::name() const noexcept {
    const registry::TagFact* fact = registry::findTag(directory().kind(), number());
    return fact == nullptr ? std::string_view() : fact->name;
}

std::string_view Entry::fieldName() const noexcept {
    const char* name = fieldNameOf(directory().kind(), number());
    return name == nullptr ? std::string_view() : name;
}

std::optional<FieldType> Entry::type() const noexcept {
    return findFieldType(record_.type) == nullptr
               ? std::nullopt
               : std::optional(static_cast<FieldType>(record_.type));
}

std::string_view Entry::typeName() const noexcept {
    const FieldTypeFact* type = findFieldType(record_.type);
    return type == nullptr ? std::string_view() : type->name;
}

std::uint64_t Entry::byteCount() const noexcept {
    return getByteCount(*file_, record_);
}

std::optional<std::uint64_t> Entry::offset() const noexcept {
    if (isInline(*file_, record_)) {
        return std::nullopt;
    }
    return file_->positionOf(getOffset(*file_, record_));
}

std::endian Entry::fileOrder() const noexcept {
    return file_->header.byteOrder == ByteOrder::BigEndian ? std::endian::big : std::endian::little;
}

const Directory& Entry::directory() const noexcept {
    return file_->directories[record_.directory];
}

std::optional<Value> Entry::value() const {
    return readValue(*file_, record_);
}

bool Entry::isInFile() const noexcept {
    return inspect::isInFile(*file_, record_);
}

bool Entry::isPointer() const noexcept {
    return findPointerTag(record_.number) != nullptr;
}

std::span<const std::uint32_t> Entry::targets() const noexcept {
    if (record_.targets > pointer_state::lastPlace) {
        return {};
    }
    return std::span(file_->targets)
        .subspan(record_.targets, static_cast<std::size_t>(record_.count));
}

}  // namespace corvinex::inspect
