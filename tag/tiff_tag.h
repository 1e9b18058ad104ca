#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <optional>
#include <span>

#include "directory/ifd_type.h"
#include "tag/raw_value.h"
#include "tag/tag_value.h"
#include "vocabulary/tag_table.h"

namespace corvinex {

class TagFile;

/// One directory entry made into a value: numbers, text, raw bytes, or the directory sets that a
/// pointer tag leads to. A tag is complete when its constructor returns; a directory then keeps its
/// TagValue alone.
///
/// A copy keeps what the output needs and nothing that served the reading: its rawData is empty,
/// isConstructed false and ifdType 0, whatever the source held. A move leaves the target in the
/// same state as a copy.
class TiffTag : public TagValue {
  public:
    /// Decodes one raw entry, whose bytes are in the file's order. Moves the file's stream.
    /// Raises TiffTagsRecoverableError, after its warning, when the entry must be dropped; the
    /// fatal badTagDataCount; and what reading a pointed-to directory raises.
    TiffTag(TagFile* file, std::span<const unsigned char> entry, IFDtype_t_ kind);
    /// The default of a baseline tag that a directory lacks (TIFF 6.0). Raises
    /// TiffTagsRecoverableError for a tag without one.
    TiffTag(unsigned short id, IFDtype_t_ kind);
    /// A tag with a single value.
    TiffTag(int id, IFDtype_t_ kind, unsigned long number);
    /// The default of MinSampleValue (280), a 0 for each sample, or of MaxSampleValue (281), 2^b -
    /// 1 for each sample of b bits.
    TiffTag(unsigned short id, IFDtype_t_ kind, std::span<const double> bitsPerSample);
    TiffTag(const TiffTag& other);
    TiffTag(TiffTag&& other) noexcept;
    TiffTag& operator=(const TiffTag&) = delete;
    TiffTag& operator=(TiffTag&&) = delete;
    ~TiffTag();

    /// The tail of the entry constructor: checks the type, then converts the value bytes or follows
    /// the pointers. The reading calls it once. It can be called again, as is documented, and then
    /// overwrites numbers and adds rationals, texts and directory sets, as long as the tag still
    /// has its value bytes.
    void processGenericTag();

    /// What is known of the tag's number in main directories.
    [[nodiscard]] const TagRow& getRow() const noexcept { return *tagRow; }

  private:
    // Entry parsing and validation.
    void setTagName() noexcept;
    void checkDataType();
    void checkComponentCount();
    void setTagDataOffset(std::span<const unsigned char> entry);
    [[nodiscard]] std::span<const unsigned char> getRawData() const noexcept;
    /// Where a value of this many bytes goes.
    [[nodiscard]] std::pmr::memory_resource& getMemoryFor(std::size_t byteCount) const noexcept;
    void readTagData(std::uint64_t byteCount, std::uint64_t elementSize,
                     std::uint64_t elementCount);
    void validateTag();
    // Functions of their own, so that the way of sound entries stays short.
    [[noreturn, gnu::cold]] void dropUntypedEntry() const;
    [[noreturn, gnu::cold]] void dropUnknownPointer() const;
    [[noreturn]] static void dropEntry();

    // Value conversion.
    void processNormalTagData();
    void processTiffTagRational();
    void processTiffTagSRational();
    void processTiffTagAscii();
    void processTiffTagNumbers();
    void warnOfDivisionByZero() const;
    [[nodiscard]] std::span<double> appendNumbers(std::uint64_t count);

    // Pointers to further directories.
    void processSubIfds();
    void processSubIfd(unsigned long long position);
    void checkThatProposedNewSubIfdIsLegal(std::uint64_t position);
    [[nodiscard]] IFDtype_t_ getSubIfdType() const noexcept;

    // Decoders of enumerated and special values, in the order of their tags.
    void processSpecificTag();
    void decodeWord();
    void processCompression();
    void processPhotometricInterpretation();
    void processImageDescription();
    void processPlanarConfiguration();
    void processGrayResponseUnit();
    void processResolutionUnit();
    void processPredictor();
    void processInkSet();
    void processJPEGProc();
    void processYCbCrPositioning();
    void processXMP();
    void processICCProfile();
    void processExposureProgram();
    void processMeteringMode();
    void processLightSource();
    void processColorSpace();
    void processSensingMethod();
    void processFileSource();
    void processSceneType();
    void processCustomRendered();
    void processExposureMode();
    void processWhiteBalance();
    void processSceneCaptureType();
    void processGainControl();
    void processContrast();
    void processSaturation();
    void processSharpness();
    void processSubjectDistanceRange();
    void processDepthFar();

    static const std::array<void (TiffTag::*)(), decoderCount> decoders;

    TagFile* tagFile = nullptr;
    std::uint64_t componentCount = 0;
    const TagRow* tagRow = nullptr;  // of the tag's number, from setTagName on
    IFDtype_t_ ifdType = IFDtype_t_::Main;
    bool isConstructed = false;
    bool lastRationalIsOneOverZero = false;
    std::optional<RawValue> rawData;  // until the value is made, or beyond
};

}  // namespace corvinex
