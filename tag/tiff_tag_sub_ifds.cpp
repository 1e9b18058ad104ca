#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "directory/ifd_tree.h"
#include "directory/pointer_guard.h"
#include "entry/reports/internal_errors.h"
#include "entry/reports/warnings.h"
#include "file/tag_file.h"
#include "format/byte_order.h"
#include "format/checked_arithmetic.h"
#include "tag/tiff_tag.h"

// The four tags that point to further directories.

namespace corvinex {

namespace {

/// The 32-bit number at a position of the value bytes; bytes past their end read as 0.
std::uint32_t loadPadded(std::span<const unsigned char> bytes, std::uint64_t position) {
    std::array<unsigned char, sizeof(std::uint32_t)> number{};
    if (position < bytes.size()) {
        const std::size_t length = std::min(number.size(), bytes.size() - position);
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(position), length, number.begin());
    }
    return loadNative<std::uint32_t>(number, 0);
}

/// What a report calls the directory that holds a refused pointer.
std::string_view getEnclosingDirectoryWord(IFDtype_t_ kind) noexcept {
    switch (kind) {
        case IFDtype_t_::Main:
            return "Main";
        case IFDtype_t_::EXIF:
            return "EXIF";
        case IFDtype_t_::GPS:
            return "GPS";
        default:
            return "Interoperability";
    }
}

}  // namespace

// Offsets are read at a 4-byte stride whatever the type, which is documented and kept on purpose:
// whoever reads a BigTIFF file with several offsets of an 8-byte type would get other directories
// otherwise.
void TiffTag::processSubIfds() {
    if (!std::holds_alternative<SubDirectories>(value)) {
        value.emplace<SubDirectories>(tagFile->getArena());
    }
    FileStream& stream = tagFile->getStream();
    const std::uint64_t previousPosition = stream.tell();
    for (std::uint64_t i = 0; i < componentCount; ++i) {
        const std::uint64_t offset = loadPadded(getRawData(), i * sizeof(std::uint32_t));
        processSubIfd(saturatingAdd(offset, tagFile->getBaseOffset()));
    }
    stream.seekWhenRead(previousPosition);
}

void TiffTag::processSubIfd(unsigned long long position) {
    if (!tagFile->getStream().seek(position)) {
        tagFile->warnOncePerFile("badSubIfdSeek" + std::to_string(position),
                                 warnings::badSubIfdSeek(position));
        dropEntry();
    }
    checkThatProposedNewSubIfdIsLegal(position);
    const PointerGuard::FollowedPointer followed(tagFile->getPointerGuard());
    IFDTree tree(tagFile, getSubIfdType());
    if (tree.size() != 0) {
        std::get<SubDirectories>(value).sets().push_back(std::move(tree));
    }
}

void TiffTag::checkThatProposedNewSubIfdIsLegal(std::uint64_t position) {
    const bool kindIsLegal = ifdType == IFDtype_t_::Main || ifdType == IFDtype_t_::EXIF;
    if (kindIsLegal && tagFile->getPointerGuard().isAllowed(getSubIfdType(), position)) {
        return;
    }
    const std::string_view word = getEnclosingDirectoryWord(ifdType);
    tagFile->warnOncePerFile("illegallyNestedIFD" + std::to_string(tagId) + std::string(word),
                             warnings::illegallyNestedIFD(tagId, word));
    dropEntry();
}

IFDtype_t_ TiffTag::getSubIfdType() const noexcept {
    switch (tagRow->pointer) {
        case Pointer::ToExif:
            return IFDtype_t_::EXIF;
        case Pointer::ToGps:
            return IFDtype_t_::GPS;
        case Pointer::ToInteroperability:
            return IFDtype_t_::Interoperability;
        default:
            return IFDtype_t_::Main;
    }
}

}  // namespace corvinex
