#include "tag/tag_value.h"

#include <algorithm>
#include <utility>

#include "directory/ifd_tree.h"
#include "tag/number_conversion.h"
#include "tag/tiff_type.h"

namespace corvinex {

SubDirectories::SubDirectories(std::pmr::memory_resource& memory) : sets_(&memory) {}

SubDirectories::SubDirectories(const SubDirectories& other) = default;

SubDirectories::SubDirectories(SubDirectories&& other) noexcept = default;

SubDirectories::~SubDirectories() = default;

std::size_t TagValue::countNumericValues() const noexcept {
    if (std::holds_alternative<double>(value)) {
        return 1;
    }
    if (const auto* numbers = std::get_if<Numbers>(&value)) {
        return numbers->size();
    }
    const auto* packed = std::get_if<PackedNumbers>(&value);
    return packed == nullptr ? 0 : packed->bytes.size() / getElementWidth(dataType);
}

double TagValue::getNumber(std::size_t index) const {
    if (const auto* number = std::get_if<double>(&value)) {
        return *number;
    }
    if (const auto* numbers = std::get_if<Numbers>(&value)) {
        return (*numbers)[index];
    }
    const std::span<const unsigned char> bytes(std::get<PackedNumbers>(value).bytes);
    double number = 0;
    convertNumbers(dataType, bytes.subspan(index * getNumberStride(dataType)), {&number, 1});
    return number;
}

double TagValue::getNumericValue(int /*index*/) const {
    return countNumericValues() == 0 ? 0.0 : getNumber(0);
}

void TagValue::copyNumbersTo(std::span<double> numbers) const {
    if (const auto* packed = std::get_if<PackedNumbers>(&value)) {
        convertNumbers(dataType, packed->bytes, numbers);
    } else if (const auto* several = std::get_if<Numbers>(&value)) {
        std::copy(several->begin(), several->end(), numbers.begin());
    } else if (const auto* number = std::get_if<double>(&value)) {
        numbers.front() = *number;
    }
}

std::vector<double> TagValue::getNumericValues() const {
    std::vector<double> numbers(countNumericValues());
    copyNumbersTo(numbers);
    return numbers;
}

std::span<double> TagValue::unpackNumbers() {
    if (auto* number = std::get_if<double>(&value)) {
        return {number, 1};
    }
    if (std::holds_alternative<PackedNumbers>(value)) {
        Numbers numbers(countNumericValues());
        copyNumbersTo(numbers);
        value = std::move(numbers);
    }
    auto* numbers = std::get_if<Numbers>(&value);
    return numbers == nullptr ? std::span<double>() : std::span(*numbers);
}

std::size_t TagValue::subIfdSize() const noexcept {
    const auto* directories = std::get_if<SubDirectories>(&value);
    return directories == nullptr ? 0 : directories->sets().size();
}

std::string_view TagValue::getRawText() const noexcept {
    const auto* text = std::get_if<Text>(&value);
    if (text == nullptr) {
        return {};
    }
    return {reinterpret_cast<const char*>(text->characters.data()), text->characters.size()};
}

}  // namespace corvinex
