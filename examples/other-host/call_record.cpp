#include <array>
#include <charconv>
#include <cmath>

#include "examples/other-host/other_host.h"

namespace {

/// Writes JSON: each write() one kind of thing that stands in lists.
struct Writer {
    std::ostream& out;

    void writeText(std::u16string_view text) {
        out << '"';
        for (const char16_t unit : text) {
            if (unit >= u' ' && unit <= u'~' && unit != u'"' && unit != u'\\') {
                out << static_cast<char>(unit);
            } else {
                constexpr std::string_view digits = "0123456789abcdef";
                out << "\\u" << digits[unit >> 12] << digits[unit >> 8 & 15]
                    << digits[unit >> 4 & 15] << digits[unit & 15];
            }
        }
        out << '"';
    }
    void write(const std::string& name) { writeText(other_host::utf16Of(name)); }
    void write(unsigned char byte) { out << unsigned{byte}; }
    void write(double number) {
        if (std::isfinite(number)) {
            std::array<char, 32> text{};
            std::to_chars(text.begin(), text.end(), number);
            out << text.data();
        } else {
            out << (std::isnan(number) ? R"("NaN")"
                    : number > 0       ? R"("Infinity")"
                                       : R"("-Infinity")");
        }
    }
    void write(const other_host::Message::Argument& argument) {
        argument.text ? writeText(*argument.text) : void(out << argument.number);
    }
    void write(const other_host::Message& message) {
        if (message.id().empty()) {
            out << R"({"id":null,"message":)";
            write(message.arguments().at(0));
        } else {
            out << R"({"id":")" << message.id() << R"(","arguments":)";
            list(message.arguments());
        }
        out << '}';
    }
    void write(const std::unique_ptr<zxArray>& value) { writeValue(value.get()); }
    void writeValue(const zxArray* value) {
        if (value == nullptr) {
            return void(out << "null");
        }
        constexpr const char* classes[] = {"double", "uint8", "char", "cell", "struct", "string"};
        out << R"({"class":")" << classes[value->data.index()] << R"(","size":[)" << value->rows
            << ',' << value->columns << ']';
        if (const auto* const structs = std::get_if<zxArray::Structs>(&value->data)) {
            out << R"(,"fields":)";
            list(structs->names);
        }
        out << R"(,"data":)";
        std::visit([this](const auto& data) { writeData(data); }, value->data);
        out << '}';
    }
    void writeData(const auto& items) { list(items); }
    void writeData(const std::vector<char16_t>& units) { writeText({units.data(), units.size()}); }
    void writeData(const zxArray::Structs& structs) {
        const char* start = "{";
        out << '[';
        for (const zxArray::Slots& fields : structs.elements) {
            out << std::exchange(start, ",{");
            for (std::size_t i = 0; i < fields.size(); ++i) {
                out << (i == 0 ? "" : ",");
                write(structs.names[i]);
                out << ':';
                write(fields[i]);
            }
            out << '}';
        }
        out << ']';
    }
    void writeData(const zxArray::String& /*text*/) { out << "null"; }  // stands in no output
    void list(const auto& items) {
        const char* separator = "";
        out << '[';
        for (const auto& item : items) {
            out << std::exchange(separator, ",");
            write(item);
        }
        out << ']';
    }
};

}  // namespace

void other_host::writeCallRecord(std::ostream& out, const zxArray* output,
                                 const std::vector<Message>& warnings,
                                 const std::optional<Message>& error) {
    Writer writer{out};
    out << R"({"output":)";
    writer.writeValue(output);
    out << R"(,"warnings":)";
    writer.list(warnings);
    out << R"(,"error":)";
    error ? writer.write(*error) : writer.writeValue(nullptr);
    out << "}\n";
}
