#pragma once

#include "inspect/rules/image_layout.h"
#include "inspect/rules/rule_context.h"

// The parts of checkImage().

namespace corvinex::inspect {

/// What the rules on image data and on samples know of an image directory.
struct ImageFacts {
    ImageLayout layout;
    SampleBits bits;
};

/// Where strips and tiles lie, and how long they are.
void checkBlocks(RuleContext& context, const ImageFacts& image);

/// Where an embedded JPEG stream lies, and how it begins.
void checkStream(RuleContext& context, bool hasBlocks);

/// Codes of strips and tiles, samples, bits and colours.
void checkSamples(RuleContext& context, const ImageFacts& image);

}  // namespace corvinex::inspect
