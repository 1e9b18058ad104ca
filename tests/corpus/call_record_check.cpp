#include "tests/corpus/call_record_check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace test {

namespace {

void require(bool condition, const std::string& what) {
    if (!condition) {
        throw MalformedRecord(what);
    }
}

/// UTF-16 units of a UTF-8 text.
std::size_t utf16Length(const std::string& text) {
    std::size_t units = 0;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        units += (byte & 0xC0) == 0x80 ? 0 : byte >= 0xF0 ? 2 : 1;
    }
    return units;
}

bool isDouble(const Json& value) {
    return value.is_number() || value == "NaN" || value == "Infinity" || value == "-Infinity";
}

bool isByte(const Json& value) {
    return value.is_number_unsigned() && value.get<std::uint64_t>() <= 255;
}

void checkValue(const Json& value);

void checkStruct(const Json& value) {
    const Json& fields = value.at("fields");
    for (const Json& element : value.at("data")) {
        require(element.is_object() && element.size() == fields.size(), "fields of an element");
        std::size_t place = 0;
        for (const auto& [name, field] : element.items()) {
            require(fields.at(place++) == name, "the order of the fields: " + name);
            checkValue(field);
        }
    }
}

void checkValue(const Json& value) {
    if (value.is_null()) {
        return;
    }
    const std::string valueClass = value.at("class");
    const Json& size = value.at("size");
    require(size.is_array() && size.size() == 2, "size");
    const std::size_t count = size.at(0).get<std::size_t>() * size.at(1).get<std::size_t>();
    const Json& data = value.at("data");
    if (valueClass == "char") {
        require(data.is_string() && utf16Length(data) == count, "the length of a text");
        return;
    }
    require(data.is_array() && data.size() == count, "the length of the data");
    if (valueClass == "double") {
        require(std::all_of(data.begin(), data.end(), isDouble), "an element of a double array");
    } else if (valueClass == "uint8") {
        require(std::all_of(data.begin(), data.end(), isByte), "an element of a uint8 array");
    } else if (valueClass == "cell") {
        std::for_each(data.begin(), data.end(), checkValue);
    } else {
        require(valueClass == "struct", "the class " + valueClass);
        checkStruct(value);
    }
}

void checkReport(const Json& report) {
    if (report.at("id").is_null()) {
        require(report.at("message").is_string(), "the message of an error without an ID");
        return;
    }
    require(report.at("id").is_string(), "the ID of a report");
    for (const Json& argument : report.at("arguments")) {
        require(argument.is_number_unsigned() || argument.is_string(), "an argument");
    }
}

}  // namespace

Json parseCallRecord(const std::string& text) {
    Json record = Json::parse(text);
    require(record.size() == 3, "the parts of a record");
    require(record.at("output").is_null() != record.at("error").is_null(), "output and error");
    checkValue(record.at("output"));
    for (const Json& warning : record.at("warnings")) {
        checkReport(warning);
        require(warning.at("id").is_string(), "the ID of a warning");
    }
    if (!record.at("error").is_null()) {
        checkReport(record.at("error"));
    }
    return record;
}

}  // namespace test
