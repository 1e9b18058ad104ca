#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

// Which codes the standards and registries give a meaning.

namespace corvinex::inspect {

/// Codes that follow one another.
struct CodeRange {
    std::uint16_t first;
    std::uint16_t last;
};

[[nodiscard]] constexpr bool isListed(std::span<const CodeRange> ranges,
                                      std::uint64_t code) noexcept {
    return std::ranges::any_of(ranges, [code](const CodeRange& range) {
        return code >= range.first && code <= range.last;
    });
}

namespace codes {

// clang-format off
/// Compression (259).
inline constexpr auto compressions = std::to_array<CodeRange>({
    {1, 10}, {99, 99}, {262, 262}, {32766, 32767}, {32769, 32773}, {32809, 32809}, {32867, 32867},
    {32895, 32898}, {32908, 32909}, {32946, 32947}, {33003, 33005}, {33007, 33007}, {34661, 34661},
    {34676, 34677}, {34712, 34713}, {34715, 34715}, {34718, 34720}, {34887, 34887}, {34892, 34892},
    {34925, 34927}, {34933, 34934}, {48124, 48124}, {50000, 50002}, {50013, 50013}, {52546, 52546},
    {65000, 65002}, {65535, 65535},
});
/// Compressions whose blocks tell samples and bits themselves.
inline constexpr auto selfDescribing = std::to_array<CodeRange>({
    {6, 7}, {33003, 33005}, {33007, 33007}, {34712, 34712}, {34892, 34892}, {34933, 34934},
    {50001, 50002}, {52546, 52546},
});
/// Compressions of line work, whose samples are not what the other tags tell.
inline constexpr auto lineWork = std::to_array<CodeRange>({{32895, 32898}});
/// PhotometricInterpretation (262).
inline constexpr auto photometrics = std::to_array<CodeRange>({
    {0, 6}, {8, 10}, {32803, 32803}, {32844, 32845}, {32892, 32892}, {34892, 34892}, {51177, 51177},
    {52527, 52527},
});
/// FillOrder (266).
inline constexpr auto fillOrders = std::to_array<CodeRange>({{1, 2}});
/// PlanarConfiguration (284).
inline constexpr auto planarConfigurations = std::to_array<CodeRange>({{1, 2}});
/// Predictor (317).
inline constexpr auto predictors = std::to_array<CodeRange>({{1, 3}, {34892, 34895}});
/// SampleFormat (339).
inline constexpr auto sampleFormats = std::to_array<CodeRange>({{1, 6}});
/// YCbCrSubSampling (530).
inline constexpr auto subsamplings = std::to_array<CodeRange>({{1, 2}, {4, 4}});
/// Orientation (274).
inline constexpr auto orientations = std::to_array<CodeRange>({{1, 8}});
/// ResolutionUnit (296).
inline constexpr auto resolutionUnits = std::to_array<CodeRange>({{1, 3}});
/// YCbCrPositioning (531).
inline constexpr auto positionings = std::to_array<CodeRange>({{1, 2}});
/// ExposureProgram (34850).
inline constexpr auto exposurePrograms = std::to_array<CodeRange>({{0, 9}});
/// MeteringMode (37383).
inline constexpr auto meteringModes = std::to_array<CodeRange>({{0, 6}, {255, 255}});
/// ColorSpace (40961).
inline constexpr auto colorSpaces = std::to_array<CodeRange>({{1, 2}, {65535, 65535}});
/// FocalPlaneResolutionUnit (41488).
inline constexpr auto focalPlaneUnits = std::to_array<CodeRange>({{1, 3}});
// clang-format on

}  // namespace codes

}  // namespace corvinex::inspect
