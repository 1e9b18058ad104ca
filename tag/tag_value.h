#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "entry/values/host_array.h"
#include "tag/unset_allocator.h"
#include "vocabulary/word_tables.h"

namespace corvinex {

class IFDTree;

/// The directory sets that a pointer tag leads to, copied with their owner.
class SubDirectories {
  public:
    explicit SubDirectories(std::pmr::memory_resource& memory);
    SubDirectories(const SubDirectories& other);
    SubDirectories(SubDirectories&& other) noexcept;
    SubDirectories& operator=(const SubDirectories&) = delete;
    SubDirectories& operator=(SubDirectories&&) = delete;
    ~SubDirectories();

    [[nodiscard]] std::pmr::vector<IFDTree>& sets() noexcept { return sets_; }
    [[nodiscard]] const std::pmr::vector<IFDTree>& sets() const noexcept { return sets_; }

  private:
    std::pmr::vector<IFDTree> sets_;
};

/// What a directory keeps of a tag: its number and name, its value, and the way to the value of its
/// output field. A result holds a great many, so they are small: a value of one number needs no
/// memory of its own, a large one stays in the type that the file has it in, and names and words
/// are those of the constant tables.
///
/// What a tag was read with lies in the memory of its file and lives no longer than that. A copy
/// has memory of its own, from the default resource.
class TagValue {
  public:
    TagValue(const TagValue&) = default;
    TagValue(TagValue&& other) noexcept
        : value(take(other.value)),
          tagId(other.tagId),
          dataType(other.dataType),
          decodedWord(other.decodedWord),
          name(other.name),
          valueOffset(other.valueOffset) {}
    TagValue& operator=(const TagValue&) = delete;
    TagValue& operator=(TagValue&&) = delete;
    ~TagValue() = default;

    [[nodiscard]] std::uint16_t getId() const noexcept { return tagId; }
    /// The field name, empty for an unknown tag. Lives as long as the module, NUL-terminated.
    [[nodiscard]] std::string_view getName() const noexcept { return getFieldName(); }
    /// The same as the host takes it.
    [[nodiscard]] const char* getFieldName() const noexcept { return name == nullptr ? "" : name; }
    /// Whether the tag has a name.
    [[nodiscard]] bool isKnown() const noexcept { return name != nullptr; }
    /// The first number, or 0.0 when there is none. The index is part of the documented interface
    /// and is ignored on purpose: callers who pass another one rely on the first number.
    [[nodiscard]] double getNumericValue(int index) const;
    [[nodiscard]] std::vector<double> getNumericValues() const;
    [[nodiscard]] std::size_t countNumericValues() const noexcept;
    /// Writes all numbers to a span of countNumericValues() elements.
    void copyNumbersTo(std::span<double> numbers) const;
    /// Number of directory sets that a pointer tag holds.
    [[nodiscard]] std::size_t subIfdSize() const noexcept;

    // Towards the host. These are defined in tag_value_output.cpp, which reading does without.

    /// The value of this tag's field: a new host array, or null for a tag without a value. Divides
    /// a Colormap's values in place, so a tag is output once.
    [[nodiscard]] HostArray getZxArray();
    /// The same for a tag of no special form, such as a default.
    [[nodiscard]] HostArray getPlainZxArray() const;
    /// Fills "ID", "Offset" and "Value" of one element of an "UnknownTags" struct array.
    void setUnknownTagZx(zxArray& unknownTags, std::size_t index) const;
    /// 1 x n char without the text's trailing zero bytes, from the current locale's encoding;
    /// 0 x 0 char when nothing is left.
    [[nodiscard]] static HostArray trim_nulls(std::string_view text);

  protected:
    using Numbers = ValueVector<double>;
    using Bytes = ValueVector<unsigned char>;
    struct Text {
        explicit Text(Bytes text) noexcept : characters(std::move(text)) {}
        Bytes characters;
    };
    /// Many numbers in host byte order, of the tag's type.
    struct PackedNumbers {
        ValueVector<unsigned char> bytes;
    };
    /// Nothing, one number, several numbers in two forms, a text, the bytes of ImageSourceData,
    /// directory sets.
    using Value =
        std::variant<std::monostate, double, Numbers, PackedNumbers, Text, Bytes, SubDirectories>;

    TagValue() = default;

    /// One number; index is below countNumericValues().
    [[nodiscard]] double getNumber(std::size_t index) const;
    /// All numbers, from here on at hand as such.
    [[nodiscard]] std::span<double> unpackNumbers();
    [[nodiscard]] std::string_view getRawText() const noexcept;

    // The tag that is read fills them in.
    // NOLINTBEGIN(misc-non-private-member-variables-in-classes)
    [[no_unique_address]] Value value;  // the three numbers behind it lie in its padding
    std::uint16_t tagId = 0;
    std::uint16_t dataType = 0;
    words::Place decodedWord = words::noWord;  // in the word table of the tag
    const char* name = nullptr;                // of a dictionary, or null for an unknown tag
    std::uint64_t valueOffset = 0;
    // NOLINTEND(misc-non-private-member-variables-in-classes)

  private:
    /// Most values are one number, which needs no look at what else there is.
    [[nodiscard]] static Value take(Value& from) noexcept {
        if (const double* number = std::get_if<double>(&from)) {
            return *number;
        }
        return std::move(from);
    }
    // A function of its own, so that the way of single numbers, which most values are, stays short.
    [[nodiscard, gnu::noinline]] HostArray getTextOrNumberRow() const;
    [[nodiscard]] HostArray getNumberRow() const;
    [[nodiscard]] HostArray getZxArrayColormap();
    [[nodiscard]] HostArray getZxArraySampleFormat() const;
    [[nodiscard]] HostArray getZxArrayImageSourceData() const;
    [[nodiscard]] HostArray getZxArraySubIfds();
    [[nodiscard]] HostArray getUnknownTagText() const;
};

}  // namespace corvinex
