#pragma once

#include <concepts>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/loading/module.h"
#include "host/values/value.h"
#include "tests/support/tiff_builder.h"

namespace host {

/// How test failures show a report.
void PrintTo(const Report& report, std::ostream* stream);

}  // namespace host

namespace test {

/// The arguments of a call besides the file.
struct Request {
    double headerOffset = 0;
    double skip = 0;
    double limit = 0;
};

/// What a call gave, with short ways to the values that tests ask for. A way that leads nowhere
/// (no such field, never set, another class) raises std::runtime_error and fails the test.
class Result {
  public:
    explicit Result(host::CallResult call) : call_(std::move(call)) {}

    [[nodiscard]] const std::vector<host::Report>& warnings() const { return call_.warnings; }
    /// The error; raises when the call succeeded or its error has no message ID.
    [[nodiscard]] const host::Report& error() const;
    [[nodiscard]] bool failed() const { return call_.failure.has_value(); }
    [[nodiscard]] const host::CallResult& call() const { return call_; }
    /// The output; raises, with the error's text, when there is none.
    [[nodiscard]] const zxArray& output() const;
    /// Number of directories of the output.
    [[nodiscard]] std::size_t directories() const;
    /// A field of a directory of the output; null where it was never set.
    [[nodiscard]] const zxArray* find(std::string_view field, std::size_t directory = 0) const;
    [[nodiscard]] const zxArray& value(std::string_view field, std::size_t directory = 0) const;
    [[nodiscard]] bool isSet(std::string_view field, std::size_t directory = 0) const;
    [[nodiscard]] bool hasField(std::string_view field) const;
    [[nodiscard]] double number(std::string_view field, std::size_t directory = 0) const;
    [[nodiscard]] std::vector<double> numbers(std::string_view field,
                                              std::size_t directory = 0) const;
    /// Text as UTF-8.
    [[nodiscard]] std::string text(std::string_view field, std::size_t directory = 0) const;

  private:
    host::CallResult call_;
};

/// The module under test, loaded once.
const host::Module& module();
/// Its file.
std::filesystem::path modulePath();

/// Reads a file of these bytes.
Result read(const Bytes& bytes, const Request& request = {});
/// Reads a JPEG made of this TIFF structure at the position of its header.
Result readAsJpeg(const Bytes& tiff, double skip = 0, double limit = 0);
/// Reads a file by name.
Result readFile(std::u16string_view name, const Request& request = {});

/// An argument of a report: a number or a text.
struct Argument : std::variant<std::uint64_t, std::string> {
    Argument(std::integral auto number) : variant(static_cast<std::uint64_t>(number)) {}
    Argument(std::string text) : variant(std::move(text)) {}
    Argument(const char* text) : variant(std::string(text)) {}
};
/// A report of the module's own component, for comparing: report("tagDataPastEOF", {273, 400}).
host::Report report(std::string_view identifier, const std::vector<Argument>& arguments = {});

// The same for nested values.
const zxArray* findField(const zxArray& structs, std::string_view field, std::size_t element = 0);
const zxArray& fieldOf(const zxArray& structs, std::string_view field, std::size_t element = 0);
double numberOf(const zxArray& value);
std::vector<double> numbersOf(const zxArray& value);
std::string textOf(const zxArray& value);
std::vector<std::string> fieldsOf(const zxArray& structs);

}  // namespace test
