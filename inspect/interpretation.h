#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "corvinex/entry.h"
#include "corvinex/value.h"

namespace corvinex::inspect {

/// What a value is, by its field type and by what the registry says of its tag. It depends on the
/// file by type and count alone, so that whoever reads many files meets one shape for one tag.
struct Interpretation {
    enum class Form : std::uint8_t {
        Number,   ///< of a tag that holds exactly one
        Numbers,  ///< in order, one as well
        Text,     ///< texts[0]
        Texts,    ///< any number of them
        Bytes,
    };

    Form form = Form::Numbers;
    std::vector<std::string> texts;  ///< UTF-8
    /// Of a comment: "ASCII", "JIS", "UNICODE" or "UNDEFINED".
    std::string_view charset;
    /// The bytes behind the zero that ends a text, unless all of them are zeros. A view of the
    /// value.
    std::span<const std::uint8_t> rest;
};

/// Takes time in proportion to the value, which must outlive the answer.
[[nodiscard]] Interpretation interpret(const Entry& entry, const Value& value);

/// The form of a value with so many elements whose type holds numbers whatever the tag, such as
/// SHORT; nothing for bytes, texts and unknown types. It is what interpret() would say, in constant
/// time.
[[nodiscard]] std::optional<Interpretation::Form> formOfNumbers(const Entry& entry,
                                                                std::size_t size);

/// Whether raw bytes are codes or flags, one number in each: a value that is Bytes to whoever does
/// not ask for codes.
[[nodiscard]] bool holdsCodes(const Entry& entry);

}  // namespace corvinex::inspect
