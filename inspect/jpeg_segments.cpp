#include "inspect/jpeg_segments.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "format/jpeg_marker.h"

namespace corvinex::inspect {

namespace {

using jpeg_marker::prefix;
using jpeg_marker::startOfImage;

constexpr std::uint8_t endOfImage = 0xD9;
constexpr std::uint8_t startOfScan = 0xDA;
constexpr std::uint8_t application1 = 0xE1;
constexpr std::array<unsigned char, 6> exifIdentifier{'E', 'x', 'i', 'f', 0, 0};
constexpr std::uint64_t lengthFieldSize = 2;
constexpr bool bigEndianNumbers = std::endian::native == std::endian::little;

/// TEM, RST0 to RST7 and SOI: markers that no length follows.
constexpr bool standsAlone(std::uint8_t code) {
    return code == 0x01 || (code >= 0xD0 && code <= startOfImage);
}

/// The frame headers SOF0 to SOF15: of the codes C0 to CF all but DHT, JPG and DAC.
constexpr bool isFrame(std::uint8_t code) {
    return code >= 0xC0 && code <= 0xCF && code != 0xC4 && code != 0xC8 && code != 0xCC;
}

class SegmentWalk {
  public:
    explicit SegmentWalk(const Source& source) : source_(source) {}

    JpegSegments run() {
        while (readMarker() && (standsAlone(code_) || readSegment())) {
        }
        return std::move(result_);
    }

  private:
    bool finish(JpegEnd end) {
        result_.end = end;
        result_.position = marker_;
        return false;
    }

    /// Reads a marker with any number of fill bytes before its code. False when the walk ends.
    bool readMarker() {
        marker_ = position_;
        auto byte = source_.number<std::uint8_t>(position_, false);
        if (byte && *byte != prefix) {
            return finish(JpegEnd::NoMarker);
        }
        while (byte == prefix) {
            byte = source_.number<std::uint8_t>(++position_, false);
        }
        if (!byte) {
            return finish(JpegEnd::EndOfFile);
        }
        if (*byte == 0) {
            return finish(JpegEnd::NoMarker);  // a byte FF of image data
        }
        code_ = *byte;
        ++position_;
        return code_ != endOfImage || finish(JpegEnd::EndOfImage);
    }

    bool readSegment() {
        const auto length = source_.number<std::uint16_t>(position_, bigEndianNumbers);
        result_.code = code_;
        result_.length = length.value_or(0);
        if (!length) {
            return finish(JpegEnd::SegmentPastEnd);
        }
        if (*length < lengthFieldSize) {
            return finish(JpegEnd::NoMarker);
        }
        const std::uint64_t end = position_ + *length;
        if (code_ == application1) {
            noteExif(end);
        } else if (isFrame(code_) && !result_.frame) {
            noteFrame(*length);
        }
        if (end > source_.size()) {
            return finish(JpegEnd::SegmentPastEnd);
        }
        if (code_ == startOfScan) {
            result_.scanData = end;
            return finish(JpegEnd::Scan);
        }
        position_ = end;
        return true;
    }

    void noteExif(std::uint64_t end) {
        const std::uint64_t payload = position_ + lengthFieldSize;
        std::array<unsigned char, exifIdentifier.size()> identifier{};
        if (end - payload >= identifier.size() && source_.read(payload, identifier) &&
            identifier == exifIdentifier) {
            result_.exif.push_back(
                {marker_, payload + identifier.size(), std::min(end, source_.size())});
        }
    }

    void noteFrame(std::uint16_t length) {
        constexpr std::uint16_t leastLength = 7;
        constexpr std::uint64_t heightPosition = lengthFieldSize + 1;  // behind the precision
        const auto height =
            source_.number<std::uint16_t>(position_ + heightPosition, bigEndianNumbers);
        const auto width =
            source_.number<std::uint16_t>(position_ + heightPosition + 2, bigEndianNumbers);
        if (length >= leastLength && height && width) {
            result_.frame = JpegFrame{*width, *height};
        }
    }

    const Source& source_;
    JpegSegments result_;
    std::uint64_t position_ = 0;
    std::uint64_t marker_ = 0;
    std::uint8_t code_ = 0;
};

}  // namespace

JpegSegments readJpegSegments(const Source& source) {
    return SegmentWalk(source).run();
}

std::optional<bool> findJpegEndMarker(const Source& source, std::uint64_t from) {
    // Cameras put previews and whole videos behind the image; this much of that is looked through.
    constexpr std::uint64_t searched = std::uint64_t{16} << 20;
    constexpr std::size_t blockSize = 4096;
    const std::uint64_t start = std::max(from, source.size() - std::min(source.size(), searched));
    std::array<unsigned char, blockSize + 1> block{};  // and the first byte of the block behind
    std::uint64_t end = source.size();
    while (end > start + 1) {
        const auto length =
            static_cast<std::size_t>(std::min<std::uint64_t>(block.size(), end - start));
        const std::span<unsigned char> bytes = std::span(block).first(length);
        if (!source.read(end - length, bytes)) {
            break;  // the file has become shorter
        }
        const std::array<unsigned char, 2> wanted{prefix, endOfImage};
        if (std::search(bytes.begin(), bytes.end(), wanted.begin(), wanted.end()) != bytes.end()) {
            return true;
        }
        end -= length - 1;
    }
    return start > from ? std::nullopt : std::optional(false);
}

}  // namespace corvinex::inspect
