#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>

#include "inspect/reading/charset.h"
#include "inspect/reading/words.h"
#include "tests/value_reading/entries.h"

// Every tag is read with every type and with bytes that nobody meant: each reading is valid UTF-8
// and stays short.

namespace {

using namespace test;
using corvinex::registry::TagFact;
using corvinex::registry::tagsOf;

struct Width {
    FieldType type;
    std::size_t bytes;
};
constexpr std::array widths{
    Width{FieldType::Byte, 1},      Width{FieldType::Ascii, 1},  Width{FieldType::Short, 2},
    Width{FieldType::Long, 4},      Width{FieldType::SByte, 1},  Width{FieldType::Rational, 8},
    Width{FieldType::Undefined, 1}, Width{FieldType::SShort, 2}, Width{FieldType::SLong, 4},
    Width{FieldType::SRational, 8}, Width{FieldType::Float, 4},  Width{FieldType::Double, 8},
    Width{FieldType::Ifd, 4},       Width{FieldType::Long8, 8},  Width{FieldType::SLong8, 8},
    Width{FieldType::Ifd8, 8},      Width{FieldType::Utf8, 1},   Width{FieldType{99}, 1},
};

class RandomElements {
  public:
    Elements make(Width width, std::size_t size) {
        Elements made{static_cast<std::uint16_t>(width.type), size, {}};
        made.bytes.resize(size * width.bytes);
        // Small numbers meet more conditions than large ones.
        const unsigned range = random_() % 2 == 0 ? 4 : 256;
        std::ranges::generate(made.bytes, [&] { return static_cast<char>(random_() % range); });
        return made;
    }

  private:
    std::mt19937 random_{1};
};

TEST(HostileValues, EveryReadingIsShortAndValidUtf8) {
    constexpr std::array<std::size_t, 6> sizes{0, 1, 3, 4, 33, 400};
    // A citation has 200 characters and there are 256 keys; nothing else is nearly as long.
    constexpr std::size_t longest = 64 * 1024;
    RandomElements random;
    for (const auto kind :
         {DirectoryKind::Main, DirectoryKind::Exif, DirectoryKind::Gps, DirectoryKind::Interop}) {
        for (const TagFact& fact : tagsOf(kind)) {
            for (const Width width : widths) {
                for (const std::size_t size : sizes) {
                    const Elements held = random.make(width, size);
                    const Entries siblings{{1, random.make(width, 2)},
                                           {296, random.make(width, 1)},
                                           {34736, random.make(width, 20)},
                                           {34737, random.make(width, 20)},
                                           {37521, random.make(width, 3)}};
                    const std::string reading =
                        readingIn(kind, fact.number, held, siblings, std::endian::big);
                    ASSERT_TRUE(corvinex::inspect::reading::isUtf8(reading)) << fact.name;
                    ASSERT_LE(reading.size(), longest) << fact.name;
                }
            }
        }
    }
}

TEST(HostileValues, AnUnknownTypeIsNotRead) {
    RandomElements random;
    for (const TagFact& fact : tagsOf(DirectoryKind::Main)) {
        EXPECT_EQ(mainReading(fact.number, random.make({FieldType{99}, 1}, 4)), "-") << fact.name;
    }
}

}  // namespace
