#include "directory/pointer_guard.h"

#include <algorithm>

#include "format/checked_arithmetic.h"

namespace corvinex {

PointerGuard::PointerGuard(std::uint64_t fileSize) noexcept
    : budget_(saturatingAdd(saturatingMultiply(fileSize, budgetPerFileByte), budgetAtLeast)),
      directoryLimit_(fileSize / fileBytesPerDirectory + directoriesAtLeast) {}

PointerGuard::OpenDirectory::OpenDirectory(PointerGuard& guard, std::uint64_t position)
    : guard_(guard) {
    guard_.openDirectories_.push_back(position);
}

PointerGuard::OpenDirectory::~OpenDirectory() {
    guard_.openDirectories_.pop_back();
}

PointerGuard::FollowedPointer::FollowedPointer(PointerGuard& guard) noexcept : guard_(guard) {
    ++guard_.depth_;
}

PointerGuard::FollowedPointer::~FollowedPointer() {
    --guard_.depth_;
}

void PointerGuard::countDirectory(std::uint64_t entryBytes) noexcept {
    if (depth_ > 0) {
        entryBytes_ = saturatingAdd(entryBytes_, entryBytes);
        ++directories_;
    }
}

bool PointerGuard::isAllowed(IFDtype_t_ kind, std::uint64_t position) const noexcept {
    const bool mayHoldPointers = kind == IFDtype_t_::Main || kind == IFDtype_t_::EXIF;
    const bool isOpen = std::find(openDirectories_.begin(), openDirectories_.end(), position) !=
                        openDirectories_.end();
    return !(mayHoldPointers && isOpen) && depth_ < maximumDepth && entryBytes_ <= budget_ &&
           directories_ <= directoryLimit_;
}

}  // namespace corvinex
