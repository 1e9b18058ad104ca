#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "directory/ifd_type.h"
#include "entry/host_value.h"
#include "vocabulary/word_tables.h"

namespace corvinex {

class IFDTree;
class RawValue;
class TagFile;

/// One directory entry made into a value: numbers, text, raw bytes, or the directory sets that a
/// pointer tag leads to. A tag is complete when its constructor returns. A result holds a great
/// many tags, so they are small: a value of one number needs no memory of its own, and names and
/// words are those of the constant tables.
///
/// A copy keeps what the output needs and nothing that served the reading: its rawData is empty,
/// isConstructed false and ifdType 0, whatever the source held. A move leaves the target in the
/// same state as a copy.
class TiffTag {
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

    [[nodiscard]] std::uint16_t getId() const noexcept { return tagId; }
    /// The field name, empty for an unknown tag. Lives as long as the module, NUL-terminated.
    [[nodiscard]] std::string_view getName() const noexcept {
        return name == nullptr ? std::string_view("") : std::string_view(*name);
    }
    /// The first number, or 0.0 when there is none. The index is accepted and ignored.
    [[nodiscard]] double getNumericValue(int index) const noexcept;
    [[nodiscard]] std::span<const double> getNumericValues() const noexcept;
    /// Number of directory sets that a pointer tag holds.
    [[nodiscard]] std::size_t subIfdSize() const noexcept;
    /// The tail of the entry constructor: checks the type, then converts the value bytes or follows
    /// the pointers. Called again while the value bytes are at hand, it overwrites numbers and adds
    /// rationals, texts and directory sets.
    void processGenericTag();

    /// The value of this tag's field: a new host array, or null for a tag without a value. Divides
    /// a Colormap's values in place, so a tag is output once.
    [[nodiscard]] HostArray getZxArray();
    /// Fills "ID", "Offset" and "Value" of one element of an "UnknownTags" struct array.
    void setUnknownTagZx(zxArray& unknownTags, std::size_t index) const;
    /// 1 x n char without the text's trailing zero bytes, from the current locale's encoding;
    /// 0 x 0 char when nothing is left.
    [[nodiscard]] static HostArray trim_nulls(std::string_view text);

  private:
    using Numbers = std::vector<double>;
    using Bytes = std::vector<unsigned char>;
    using Sets = std::vector<IFDTree>;
    /// Nothing, one number, several numbers, a text, the bytes of ImageSourceData, directory sets.
    using Value = std::variant<std::monostate, double, Numbers, std::string, Bytes, Sets>;

    // Entry parsing and validation.
    void setTagName() noexcept;
    void checkDataType();
    void checkComponentCount();
    void setTagDataOffset(std::span<const unsigned char> entry);
    [[nodiscard]] std::span<const unsigned char> getRawData() const noexcept;
    void readTagData(std::uint64_t byteCount, std::uint64_t elementSize,
                     std::uint64_t elementCount);
    void validateTag();
    [[nodiscard]] bool isSubIfdPointer() const noexcept;
    [[noreturn]] void dropEntry() const;

    // Value conversion.
    void processNormalTagData();
    void processTiffTagRational();
    void processTiffTagSRational();
    void processTiffTagAscii();
    template <class Element>
    void processTiffTagNumbers();
    void warnOfDivisionByZero() const;
    void setNumbers(Numbers numbers);
    [[nodiscard]] Numbers copyNumbers() const;
    [[nodiscard]] std::span<double> getNumericValues() noexcept;
    [[nodiscard]] const std::string& getRawText() const noexcept;

    // Pointers to further directories.
    void processSubIfds();
    void processSubIfd(unsigned long long position);
    void checkThatProposedNewSubIfdIsLegal(std::uint64_t position);
    [[nodiscard]] IFDtype_t_ getSubIfdType() const noexcept;

    // Conversion to host arrays.
    [[nodiscard]] HostArray getZxArrayColormap();
    [[nodiscard]] HostArray getZxArraySampleFormat() const;
    [[nodiscard]] HostArray getZxArrayImageSourceData() const;
    [[nodiscard]] HostArray getZxArraySubIfds();
    [[nodiscard]] HostArray getUnknownTagText() const;

    // Decoders of enumerated and special values, in the order of their tags.
    void processSpecificTag();
    void decodeWord(words::Table table);
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

    Value value;
    const char* decodedWord = nullptr;  // of a word table, or null
    TagFile* tagFile = nullptr;
    const std::string* name = nullptr;  // of a dictionary, or null for an unknown tag
    std::uint64_t componentCount = 0;
    std::uint64_t valueOffset = 0;
    std::uint16_t tagId = 0;
    std::uint16_t dataType = 0;
    IFDtype_t_ ifdType = IFDtype_t_::Main;
    bool isConstructed = false;
    bool lastRationalIsOneOverZero = false;
    std::unique_ptr<RawValue> rawData;  // until the tag is filed
};

}  // namespace corvinex
