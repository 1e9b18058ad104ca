#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/inspect/inspected.h"
#include "tests/support/tiff_builder.h"

// Small whole images, of which no rule tells anything, and what rules tell of changed ones.

namespace inspect_test {

using Texts = std::vector<std::string>;
using Fields = std::vector<test::Field>;

/// Where the pixels of the images stand, and where their file ends.
inline constexpr std::uint64_t pixelPosition = 2048;
inline constexpr std::size_t imageFileSize = 4096;

/// A gray image of 2 x 2 pixels in one strip.
inline Fields soundImage() {
    return {test::number(256, test::SHORT, 2),
            test::number(257, test::SHORT, 2),
            test::number(258, test::SHORT, 8),
            test::number(259, test::SHORT, 1),
            test::number(262, test::SHORT, 1),
            test::number(273, test::LONG, pixelPosition),
            test::number(277, test::SHORT, 1),
            test::number(278, test::SHORT, 2),
            test::number(279, test::LONG, 4),
            test::rationals(282, test::RATIONAL, {{72, 1}}),
            test::rationals(283, test::RATIONAL, {{72, 1}})};
}

/// The fields with some put in the place of those with their number, or added, and some taken out.
/// They ascend by number.
inline Fields changed(Fields fields, const Fields& put,
                      const std::vector<std::uint16_t>& removed = {}) {
    std::erase_if(fields, [&](const test::Field& field) {
        return std::ranges::find(removed, field.tag) != removed.end() ||
               std::ranges::find(put, field.tag, &test::Field::tag) != put.end();
    });
    fields.insert(fields.end(), put.begin(), put.end());
    std::ranges::stable_sort(fields, {}, &test::Field::tag);
    return fields;
}

/// A file of one directory, with room for the pixels.
inline Bytes imageFile(Fields fields, test::Layout layout = test::Layout::Classic,
                       test::Order order = test::Order::Little) {
    Bytes bytes = fileWith(std::move(fields), order, layout);
    bytes.resize(std::max(bytes.size(), imageFileSize));
    return bytes;
}

/// "severity id [directory] tag, arguments: sentence" of each finding, as they are listed.
inline Texts sentencesOf(const corvinex::inspect::File& file) {
    Texts texts = findingsOf(file);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const corvinex::inspect::Finding& finding = file.findings()[i];
        texts[i] =
            std::string(severityName(finding.severity)) + " " + texts[i] + ": " + finding.text;
    }
    return texts;
}

/// What is told of the sound image with such changes.
inline Texts toldOf(const Fields& put, const std::vector<std::uint16_t>& removed = {}) {
    return sentencesOf(inspect(imageFile(changed(soundImage(), put, removed))));
}

}  // namespace inspect_test
