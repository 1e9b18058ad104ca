#include "tests/support/module_call.h"

#include <algorithm>
#include <stdexcept>

#include "host/platform/unicode.h"
#include "tests/support/temporary_file.h"

namespace host {

void PrintTo(const Report& report, std::ostream* stream) {
    *stream << report.id << "(";
    const char* separator = "";
    for (const auto& argument : report.arguments) {
        *stream << separator;
        separator = ", ";
        if (argument.text) {
            *stream << '"' << displayText(*argument.text) << '"';
        } else {
            *stream << argument.number;
        }
    }
    *stream << ")";
}

}  // namespace host

namespace test {

const host::Report& Result::error() const {
    if (!call_.failure || !call_.failure->report) {
        throw std::runtime_error("no error with a message ID");
    }
    return *call_.failure->report;
}

const zxArray& Result::output() const {
    if (!call_.output) {
        throw std::runtime_error("no output: " + (call_.failure ? call_.failure->message : ""));
    }
    return *call_.output;
}

std::size_t Result::directories() const {
    return host::sizeOf(output()).rows;
}

const zxArray* Result::find(std::string_view field, std::size_t directory) const {
    return findField(output(), field, directory);
}

const zxArray& Result::value(std::string_view field, std::size_t directory) const {
    return fieldOf(output(), field, directory);
}

bool Result::isSet(std::string_view field, std::size_t directory) const {
    return find(field, directory) != nullptr;
}

bool Result::hasField(std::string_view field) const {
    const auto names = fieldsOf(output());
    return std::find(names.begin(), names.end(), field) != names.end();
}

double Result::number(std::string_view field, std::size_t directory) const {
    return numberOf(value(field, directory));
}

std::vector<double> Result::numbers(std::string_view field, std::size_t directory) const {
    return numbersOf(value(field, directory));
}

std::string Result::text(std::string_view field, std::size_t directory) const {
    return textOf(value(field, directory));
}

const host::Module& module() {
    static const host::Module loaded(CORVINEX_MODULE);
    return loaded;
}

std::filesystem::path modulePath() {
    return CORVINEX_MODULE;
}

Result read(const Bytes& bytes, const Request& request) {
    const TemporaryFile file(bytes);
    return readFile(file.name(), request);
}

Result readAsJpeg(const Bytes& tiff, double skip, double limit) {
    const JpegWithExif jpeg = jpegWithExif(tiff);
    return read(jpeg.bytes, {static_cast<double>(jpeg.headerPosition), skip, limit});
}

Result readFile(std::u16string_view name, const Request& request) {
    return Result(module().call(name, request.headerOffset, request.skip, request.limit));
}

host::Report report(std::string_view identifier, const std::vector<Argument>& arguments) {
    host::Report expected{"quorra:corvinex:" + std::string(identifier), {}};
    for (const Argument& argument : arguments) {
        if (const auto* number = std::get_if<std::uint64_t>(&argument)) {
            expected.arguments.emplace_back(*number);
        } else {
            expected.arguments.emplace_back(
                host::utf16FromUtf8(std::get<std::string>(argument)).value());
        }
    }
    return expected;
}

const zxArray* findField(const zxArray& structs, std::string_view field, std::size_t element) {
    return host::fieldAt(structs, element, field);
}

const zxArray& fieldOf(const zxArray& structs, std::string_view field, std::size_t element) {
    const zxArray* value = findField(structs, field, element);
    if (value == nullptr) {
        throw std::runtime_error("field " + std::string(field) + " was never set");
    }
    return *value;
}

double numberOf(const zxArray& value) {
    const auto numbers = host::doublesOf(value);
    if (numbers.size() != 1) {
        throw std::runtime_error("not a scalar");
    }
    return numbers.front();
}

std::vector<double> numbersOf(const zxArray& value) {
    const auto numbers = host::doublesOf(value);
    return {numbers.begin(), numbers.end()};
}

std::string textOf(const zxArray& value) {
    return host::displayText(host::textOf(value));
}

std::vector<std::string> fieldsOf(const zxArray& structs) {
    const auto names = host::fieldNamesOf(structs);
    return {names.begin(), names.end()};
}

}  // namespace test
