#pragma once

#include <tiffio.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/module_call.h"
#include "tests/support/single_directory.h"
#include "tests/support/temporary_file.h"

namespace test {

/// A file that libtiff writes, in the byte order and layout given. What libtiff refuses raises
/// std::runtime_error.
class LibtiffFile {
  public:
    explicit LibtiffFile(const Container& container);

    [[nodiscard]] TIFF* handle() const { return tiff_.get(); }
    [[nodiscard]] const std::filesystem::path& path() const { return file_.path(); }

    /// Sets a field of the open directory with the arguments that libtiff's own setter wants.
    template <typename... Values>
    void set(std::uint32_t tag, Values... values) {
        require(TIFFSetField(handle(), tag, values...) == 1, "field " + std::to_string(tag));
    }
    /// The same from numbers, put into the form that libtiff's field table tells.
    void setNumbers(std::uint32_t tag, const std::vector<double>& values);
    /// What every image needs; one row a strip.
    void setImage(std::uint32_t width, std::uint32_t height, std::uint16_t bitsPerSample,
                  std::uint16_t samplesPerPixel, std::uint16_t photometric);
    /// Encodes a strip of these bytes for each row group.
    void writeStrips();
    /// An image of 8 x 2 grey pixels, complete but for its directory.
    void writeSmallImage();
    /// Ends the open directory, so that the next one starts.
    void writeDirectory();
    /// Closes the file and has the module read it.
    Result read();

    static void require(bool isDone, const std::string& what) {
        if (!isDone) {
            throw std::runtime_error("libtiff refuses " + what);
        }
    }

  private:
    template <typename Element>
    void setElements(const TIFFField& field, const std::vector<double>& values);

    struct Close {
        void operator()(TIFF* tiff) const noexcept { TIFFClose(tiff); }
    };
    TemporaryFile file_;
    std::unique_ptr<TIFF, Close> tiff_;
};

/// A file's bytes.
Bytes contentOf(const std::filesystem::path& path);

}  // namespace test
