#pragma once

#include <cstddef>
#include <cstdint>

/// What the fuzzing engine calls with each input. Whatever ends the process is a find.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
