#include "tests/damage/damaged_call.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <string_view>

#include "fuzz/memory_file.h"
#include "fuzz/value_walk.h"
#include "host/values/value.h"
#include "tests/damage/documented_reports.h"
#include "tests/support/module_call.h"
#include "tests/vocabulary/expected_names.h"

namespace test {

namespace {

/// Chains of damaged files may come back on themselves.
constexpr double directoryLimit = 5;

void expectDocumented(const host::CallResult& result) {
    EXPECT_NE(result.output != nullptr, result.failure.has_value());
    if (result.failure) {
        EXPECT_TRUE(result.failure->report &&
                    documentedReports().errors.contains(result.failure->report->id))
            << result.failure->message;
    }
    for (const host::Report& warning : result.warnings) {
        EXPECT_TRUE(documentedReports().warnings.contains(warning.id)) << warning.id;
    }
}

std::span<const ExpectedName> namesOf(DirectoryKind kind) {
    switch (kind) {
        case DirectoryKind::Gps:
            return gpsNames;
        case DirectoryKind::Interop:
            return interopNames;
        default:
            return primaryNames;
    }
}

/// The field of a tag; empty for one without a name.
std::string_view fieldName(const MapEntry& entry) {
    constexpr std::uint16_t imageLength = 257;
    if (entry.tag == imageLength && entry.kind == DirectoryKind::Main) {
        return "Height";
    }
    const auto names = namesOf(entry.kind);
    const auto found = std::find_if(names.begin(), names.end(), [&entry](const ExpectedName& name) {
        return name.tag == entry.tag;
    });
    return found == names.end() ? std::string_view() : found->name;
}

/// A field of an element; null when there is no such field or element.
const zxArray* fieldIn(const zxArray* structs, std::size_t element, std::string_view field) {
    if (structs == nullptr || host::classOf(*structs) != host::ValueClass::Struct ||
        element >= host::sizeOf(*structs).rows) {
        return nullptr;
    }
    const auto names = host::fieldNamesOf(*structs);
    const auto found = std::find(names.begin(), names.end(), field);
    return found == names.end()
               ? nullptr
               : host::fieldAt(*structs, element, static_cast<std::size_t>(found - names.begin()));
}

const zxArray* findUnknown(const zxArray* records, std::uint16_t tag) {
    const std::size_t count = records == nullptr ? 0 : host::sizeOf(*records).rows;
    for (std::size_t i = 0; i < count; ++i) {
        if (numberOf(fieldOf(*records, "ID", i)) == tag) {
            return host::fieldAt(*records, i, "Value");
        }
    }
    return nullptr;
}

const zxArray* setIn(const zxArray* value, std::size_t set) {
    if (value == nullptr || host::classOf(*value) != host::ValueClass::Cell) {
        return value;
    }
    return set < host::sizeOf(*value).columns ? host::cellAt(*value, set) : nullptr;
}

host::CallResult call(std::size_t headerPosition) {
    return module().call(u"file", static_cast<double>(headerPosition), 0, directoryLimit);
}

void expectSame(const host::CallResult& result, const host::CallResult& other) {
    EXPECT_EQ(fuzz::digestOf(result.output.get()), fuzz::digestOf(other.output.get()));
    EXPECT_EQ(result.warnings, other.warnings);
    EXPECT_EQ(result.failure ? result.failure->message : "",
              other.failure ? other.failure->message : "");
}

}  // namespace

host::CallResult callOnDamaged(std::span<const unsigned char> bytes, std::size_t headerPosition) {
    const fuzz::ScopedMemoryFile file(bytes, {}, std::numeric_limits<std::int64_t>::max());
    const std::size_t values = host::livingValues();
    host::CallResult result = call(headerPosition);
    expectDocumented(result);
    EXPECT_EQ(fuzz::ScopedMemoryFile::openStreams(), 0U);
    EXPECT_FALSE(fuzz::ScopedMemoryFile::isSpent());
    fuzz::ScopedMemoryFile::becomeFile();
    expectSame(call(headerPosition), result);
    if (!result.output) {
        EXPECT_EQ(host::livingValues(), values);
    }
    return result;
}

const zxArray* findEntry(const zxArray* output, const MapEntry& entry) {
    const zxArray* structs = output;
    std::size_t element = entry.path.front().directory;
    for (std::size_t i = 1; i < entry.path.size(); ++i) {
        const MapStep& step = entry.path[i];
        structs = setIn(fieldIn(structs, element, step.field), step.set);
        element = step.directory;
    }
    const std::string_view name = fieldName(entry);
    return name.empty() ? findUnknown(fieldIn(structs, element, "UnknownTags"), entry.tag)
                        : fieldIn(structs, element, name);
}

void Outcomes::count(const host::CallResult& result) {
    ++calls_;
    if (result.failure) {
        ++ends_[result.failure->report ? result.failure->report->id : result.failure->message];
    } else {
        ++ends_[result.warnings.empty() ? "read without a warning" : "read with warnings"];
    }
}

void Outcomes::print(const std::string& title) const {
    std::cout << title << ": " << calls_ << " files\n";
    for (const auto& [end, count] : ends_) {
        std::cout << "  " << count << " " << end << "\n";
    }
}

std::size_t damageStride(std::size_t fileSize) {
    if (const char* chosen = std::getenv("CORVINEX_DAMAGE_STRIDE")) {
        return std::max<std::size_t>(std::strtoul(chosen, nullptr, 10), 1);
    }
    constexpr std::size_t fewer = 16;
#ifdef CORVINEX_SANITIZED
    return fewer;
#endif
    constexpr std::size_t largeFile = 8192;
    return fileSize > largeFile ? fewer : 1;
}

}  // namespace test
