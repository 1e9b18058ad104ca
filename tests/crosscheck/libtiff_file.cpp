#include "tests/crosscheck/libtiff_file.h"

#include <fstream>
#include <iterator>

namespace test {

namespace {

std::string modeOf(const Container& container) {
    // "+": directories that are written can be opened again.
    return std::string("w+") + (container.order == Order::Little ? "l" : "b") +
           (container.layout == Layout::Big ? "8" : "");
}

}  // namespace

LibtiffFile::LibtiffFile(const Container& container)
    : file_({}), tiff_(TIFFOpen(file_.path().c_str(), modeOf(container).c_str())) {
    require(tiff_ != nullptr, "the file");
}

template <typename Element>
void LibtiffFile::setElements(const TIFFField& field, const std::vector<double>& values) {
    std::vector<Element> elements;
    for (const double value : values) {
        elements.push_back(static_cast<Element>(value));
    }
    const std::uint32_t tag = TIFFFieldTag(&field);
    const bool isCounted = TIFFFieldPassCount(&field) != 0;
    const int count = TIFFFieldWriteCount(&field);
    if (isCounted && count == TIFF_VARIABLE2) {
        set(tag, static_cast<std::uint32_t>(elements.size()), elements.data());
    } else if (isCounted) {
        set(tag, static_cast<int>(elements.size()), elements.data());
    } else if (values.size() == 1) {
        set(tag, elements.front());  // libtiff repeats it where each sample has one
    } else {
        require(elements.size() == static_cast<std::size_t>(count), "another count");
        set(tag, elements.data());
    }
}

void LibtiffFile::setNumbers(std::uint32_t tag, const std::vector<double>& values) {
    const TIFFField* field = TIFFFindField(handle(), tag, TIFF_ANY);
    require(field != nullptr, "tag " + std::to_string(tag));
    switch (TIFFFieldDataType(field)) {
        case TIFF_BYTE:
        case TIFF_UNDEFINED:
            return setElements<std::uint8_t>(*field, values);
        case TIFF_SBYTE:
            return setElements<std::int8_t>(*field, values);
        case TIFF_SHORT:
            return setElements<std::uint16_t>(*field, values);
        case TIFF_SSHORT:
            return setElements<std::int16_t>(*field, values);
        case TIFF_LONG:
            return setElements<std::uint32_t>(*field, values);
        case TIFF_SLONG:
            return setElements<std::int32_t>(*field, values);
        case TIFF_LONG8:
            return setElements<std::uint64_t>(*field, values);
        case TIFF_FLOAT:
            return setElements<float>(*field, values);
        case TIFF_DOUBLE:
            return setElements<double>(*field, values);
        case TIFF_RATIONAL:
        case TIFF_SRATIONAL:
            return TIFFFieldSetGetSize(field) == sizeof(double)
                       ? setElements<double>(*field, values)
                       : setElements<float>(*field, values);
        default:
            require(false, "the type of tag " + std::to_string(tag));
    }
}

void LibtiffFile::setImage(std::uint32_t width, std::uint32_t height, std::uint16_t bitsPerSample,
                           std::uint16_t samplesPerPixel, std::uint16_t photometric) {
    set(TIFFTAG_IMAGEWIDTH, width);
    set(TIFFTAG_IMAGELENGTH, height);
    set(TIFFTAG_BITSPERSAMPLE, bitsPerSample);
    set(TIFFTAG_SAMPLESPERPIXEL, samplesPerPixel);
    set(TIFFTAG_PHOTOMETRIC, photometric);
    set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    set(TIFFTAG_ROWSPERSTRIP, 1U);
}

void LibtiffFile::writeStrips() {
    std::vector<unsigned char> pixels(static_cast<std::size_t>(TIFFStripSize(handle())));
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = static_cast<unsigned char>(i * 7);
    }
    for (std::uint32_t strip = 0; strip < TIFFNumberOfStrips(handle()); ++strip) {
        require(TIFFWriteEncodedStrip(handle(), strip, pixels.data(),
                                      static_cast<tmsize_t>(pixels.size())) >= 0,
                "a strip");
    }
}

void LibtiffFile::writeSmallImage() {
    setImage(8, 2, 8, 1, PHOTOMETRIC_MINISBLACK);
    writeStrips();
}

void LibtiffFile::writeDirectory() {
    require(TIFFWriteDirectory(handle()) == 1, "the directory");
}

Result LibtiffFile::read() {
    tiff_.reset();
    return readFile(file_.name());
}

Bytes contentOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace test
