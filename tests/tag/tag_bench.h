#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "directory/ifd_type.h"
#include "file/tag_file.h"
#include "host/messages/reports.h"
#include "tag/tiff_tag.h"
#include "tests/support/single_directory.h"
#include "tests/support/temporary_file.h"

namespace test {

/// One raw directory entry in little-endian order: its value field holds this number.
inline Bytes rawEntry(std::uint16_t tag, std::uint16_t type, std::uint64_t count,
                      std::uint64_t valueField, Layout layout = Layout::Classic) {
    const std::size_t width = layout == Layout::Big ? 8 : 4;
    ByteWriter writer(Order::Little);
    writer.number(tag, 2).number(type, 2).number(count, width).number(valueField, width);
    return writer.bytes();
}

/// A little-endian file opened by the module, before its header is read: tags are made from
/// entries one by one, and their warnings collected.
class TagBench {
  public:
    explicit TagBench(const Bytes& bytes = tiffOf({}))
        : disk_(bytes),
          file_(disk_.name(), 0, 0, 0),
          sink_([this](const host::Report& warning) { warnings_.push_back(warning); }) {}

    [[nodiscard]] corvinex::TiffTag make(const Bytes& entry,
                                         corvinex::IFDtype_t_ kind = corvinex::IFDtype_t_::Main) {
        return corvinex::TiffTag(&file_, entry, kind);
    }
    [[nodiscard]] corvinex::TagFile& file() { return file_; }
    [[nodiscard]] const TemporaryFile& disk() const { return disk_; }
    /// The warnings since the last call.
    [[nodiscard]] Reports takeWarnings() { return std::exchange(warnings_, {}); }

  private:
    TemporaryFile disk_;
    corvinex::TagFile file_;
    Reports warnings_;
    host::ScopedWarningSink sink_;
};

/// A tag's numbers.
inline std::vector<double> valuesOf(const corvinex::TiffTag& tag) {
    const auto values = tag.getNumericValues();
    return {values.begin(), values.end()};
}

/// Warnings of tags that are made without a file.
class WarningLog {
  public:
    WarningLog() : sink_([this](const host::Report& warning) { warnings_.push_back(warning); }) {}
    [[nodiscard]] Reports take() { return std::exchange(warnings_, {}); }

  private:
    Reports warnings_;
    host::ScopedWarningSink sink_;
};

}  // namespace test
