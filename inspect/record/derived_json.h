#pragma once

#include <span>

#include "corvinex/derived.h"
#include "inspect/record/json_writer.h"

namespace corvinex::inspect {

/// Writes facts as one object.
void writeDerived(JsonWriter& json, std::span<const DerivedFact> facts);

}  // namespace corvinex::inspect
