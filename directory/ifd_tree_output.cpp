#include <array>
#include <bit>
#include <span>
#include <vector>

#include "directory/ifd.h"
#include "directory/ifd_tree.h"
#include "entry/values/host_value.h"
#include "file/file_information.h"
#include "file/tag_file.h"
#include "format/tiff_header.h"
#include "host/interface/platform.h"
#include "vocabulary/tag_table.h"

// From a directory set to its host struct array.

namespace corvinex {

namespace {

HostArray makeSignature(const TagFile& file) {
    if (file.isJpegFile()) {
        return makeEmptyNumbers();
    }
    const auto& signature = file.getHeaderSignature();
    const std::array<double, 4> numbers{
        static_cast<double>(signature[0]), static_cast<double>(signature[1]),
        static_cast<double>(signature[2]), static_cast<double>(signature[3])};
    return makeNumberRow(numbers);
}

const char* getByteOrderText(const TagFile& file) {
    const auto order = findByteOrder(std::span(file.getHeaderSignature()).first<2>());
    return order == std::endian::big ? "big-endian" : "little-endian";
}

}  // namespace

HostArray IFDTree::repackageIfds() {
    if (tagNames.empty() && defaultTagsSeen == 0 && !hasUnknownTags) {
        return makeEmptyNumbers();
    }
    HostArray output = makeStructColumn(ifds.size(), getFieldNames());
    const bool isMain = ifdType == IFDtype_t_::Main;
    if (isMain) {
        setDefaultZxFields(*output);
    }
    for (std::size_t i = 0; i < ifds.size(); ++i) {
        if (isMain) {
            ifds[i].setWidthAndHeight(*output, i);
            ifds[i].setColorType(*output, i);
            ifds[i].setBitDepth(*output, i);
            if (!tagFile->isJpegFile()) {
                setField(*output, i, "Offset",
                         makeNumber(static_cast<double>(ifds[i].getOffset())));
            }
        }
        ifds[i].ifd2struct(*output, i);
    }
    return output;
}

std::vector<const char*> IFDTree::getFieldNames() const {
    const bool isMain = ifdType == IFDtype_t_::Main;
    std::vector<const char*> names;
    names.reserve(tagFile->getDefaultFields().size() + tagNames.size() +
                  static_cast<std::size_t>(std::popcount(defaultTagsSeen)) + 1);
    if (isMain) {
        const auto defaults = tagFile->getDefaultFields();
        names.assign(defaults.begin(), defaults.end());
    }
    const auto add = [&](std::uint16_t number, const char* name) {
        if (!isMain || !tagAlreadyOnDefaultList(number)) {
            names.push_back(name);
        }
    };
    // Both ascend by number. A tag that one directory has and another lacks is in both.
    auto tag = tagNames.begin();
    for (std::uint32_t left = defaultTagsSeen; left != 0; left &= left - 1) {
        const auto [number, name] =
            IFD::getBaselineTag(static_cast<std::size_t>(std::countr_zero(left)));
        for (; tag != tagNames.end() && tag->number < number; ++tag) {
            add(tag->number, tag->name);
        }
        if (tag == tagNames.end() || tag->number != number) {
            add(number, name.data());
        }
    }
    for (; tag != tagNames.end(); ++tag) {
        add(tag->number, tag->name);
    }
    if (hasUnknownTags) {
        names.push_back("UnknownTags");
    }
    return names;
}

// Made anew for every element: the host owns each value it is given.
void IFDTree::setDefaultZxFields(zxArray& output) const {
    const std::u16string modificationDate =
        fl::i18n::to_ustring(formatLocalTime(tagFile->getFileStatus().lastModification));
    const char* format = getFormatText(tagFile->getFileFormat());
    for (std::size_t i = 0; i < ifds.size(); ++i) {
        setField(output, i, "Filename", makeText(tagFile->getFilename()));
        setField(output, i, "FileModDate", makeText(modificationDate));
        setField(output, i, "FileSize", makeNumber(static_cast<double>(tagFile->getFileSize())));
        setField(output, i, "Format", makeWord(format));
        setField(output, i, "FormatSignature", makeSignature(*tagFile));
        if (!tagFile->isJpegFile()) {
            setField(output, i, "ByteOrder", makeWord(getByteOrderText(*tagFile)));
        }
    }
}

bool IFDTree::tagAlreadyOnDefaultList(std::uint16_t number) const {
    return !tagFile->isJpegFile() && findTag(number).baselinePlace != 0;
}

}  // namespace corvinex
