#include "tool/call_record.h"

#include <rapidjson/ostreamwrapper.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "host/unicode.h"
#include "host/value.h"
#include "tool/number_text.h"
#include "tool/text_display.h"

namespace tool {
namespace {

bool isSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

bool isPairAt(std::u16string_view text, std::size_t index) {
    return text[index] >= 0xD800 && text[index] <= 0xDBFF && index + 1 < text.size() &&
           text[index + 1] >= 0xDC00 && text[index + 1] <= 0xDFFF;
}

class RecordWriter {
  public:
    explicit RecordWriter(std::ostream& out) : stream_(out), json_(stream_) {}

    void result(const host::CallResult& result) {
        json_.StartObject();
        key("output");
        value(result.output.get());
        key("warnings");
        json_.StartArray();
        for (const host::Report& warning : result.warnings) {
            report(warning);
        }
        json_.EndArray();
        key("error");
        if (result.failure) {
            failure(*result.failure);
        } else {
            json_.Null();
        }
        json_.EndObject();
    }

  private:
    void key(std::string_view name) {
        json_.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
    }

    void string(std::string_view utf8) {
        json_.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
    }

    void text(std::u16string_view text) {
        if (const auto utf8 = host::utf8FromUtf16(text)) {
            string(*utf8);
        } else {
            textWithLoneSurrogates(text);
        }
    }

    /// The library writes valid text only: the stretches between lone surrogates are its own, the
    /// escapes are put between them.
    void textWithLoneSurrogates(std::u16string_view text) {
        std::string joined = "\"";
        std::size_t from = 0;
        for (std::size_t i = 0; i <= text.size(); ++i) {
            if (i < text.size() && isPairAt(text, i)) {
                ++i;
                continue;
            }
            if (i < text.size() && !isSurrogate(text[i])) {
                continue;
            }
            joined += unquotedJson(text.substr(from, i - from));
            if (i < text.size()) {
                // Shown alone, a surrogate is its \uXXXX escape.
                joined += visibleText(text.substr(i, 1));
            }
            from = i + 1;
        }
        joined += '"';
        json_.RawValue(joined.data(), joined.size(), rapidjson::kStringType);
    }

    static std::string unquotedJson(std::u16string_view valid) {
        const std::string utf8 = host::displayText(valid);
        rapidjson::StringBuffer buffer;
        rapidjson::Writer<rapidjson::StringBuffer> json(buffer);
        json.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
        return {buffer.GetString() + 1, buffer.GetSize() - 2};
    }

    void report(const host::Report& report) {
        json_.StartObject();
        key("id");
        string(report.id);
        key("arguments");
        json_.StartArray();
        for (const auto& argument : report.arguments) {
            if (const auto* number = std::get_if<std::uint64_t>(&argument)) {
                json_.Uint64(*number);
            } else {
                text(std::get<std::u16string>(argument));
            }
        }
        json_.EndArray();
        json_.EndObject();
    }

    void failure(const host::Failure& failure) {
        if (failure.report) {
            report(*failure.report);
            return;
        }
        json_.StartObject();
        key("id");
        json_.Null();
        key("message");
        // The text is whatever an exception said, not always valid UTF-8.
        string(host::utf16FromUtf8(failure.message) ? failure.message
                                                    : visibleText(failure.message));
        json_.EndObject();
    }

    void head(std::string_view className, host::Size size) {
        key("class");
        string(className);
        key("size");
        json_.StartArray();
        json_.Uint64(size.rows);
        json_.Uint64(size.columns);
        json_.EndArray();
    }

    void value(const zxArray* value) {
        if (value == nullptr) {
            json_.Null();
            return;
        }
        json_.StartObject();
        switch (host::classOf(*value)) {
            case host::ValueClass::Double:
                doubles(*value);
                break;
            case host::ValueClass::Uint8:
                bytes(*value);
                break;
            case host::ValueClass::Char:
                head("char", host::sizeOf(*value));
                key("data");
                text(host::textOf(*value));
                break;
            case host::ValueClass::String:
                throw std::logic_error("a module's output holds no string scalar");
            case host::ValueClass::Cell:
                cells(*value);
                break;
            case host::ValueClass::Struct:
                elements(*value);
                break;
        }
        json_.EndObject();
    }

    void doubles(const zxArray& value) {
        head("double", host::sizeOf(value));
        key("data");
        json_.StartArray();
        for (const double number : host::doublesOf(value)) {
            const std::string shortest = numberText(number);
            if (std::isfinite(number)) {
                json_.RawValue(shortest.data(), shortest.size(), rapidjson::kNumberType);
            } else {
                string(shortest);
            }
        }
        json_.EndArray();
    }

    void bytes(const zxArray& value) {
        head("uint8", host::sizeOf(value));
        key("data");
        json_.StartArray();
        for (const unsigned char byte : host::bytesOf(value)) {
            json_.Uint(byte);
        }
        json_.EndArray();
    }

    void cells(const zxArray& cell) {
        const host::Size size = host::sizeOf(cell);
        head("cell", size);
        key("data");
        json_.StartArray();
        for (std::size_t i = 0; i < size.rows * size.columns; ++i) {
            value(host::cellAt(cell, i));
        }
        json_.EndArray();
    }

    void elements(const zxArray& array) {
        const host::Size size = host::sizeOf(array);
        const auto names = host::fieldNamesOf(array);
        head("struct", size);
        key("fields");
        json_.StartArray();
        for (const std::string& name : names) {
            string(name);
        }
        json_.EndArray();
        key("data");
        json_.StartArray();
        for (std::size_t element = 0; element < size.rows * size.columns; ++element) {
            json_.StartObject();
            for (std::size_t field = 0; field < names.size(); ++field) {
                key(names[field]);
                value(host::fieldAt(array, element, field));
            }
            json_.EndObject();
        }
        json_.EndArray();
    }

    rapidjson::OStreamWrapper stream_;
    rapidjson::Writer<rapidjson::OStreamWrapper> json_;
};

}  // namespace

void writeCallRecord(std::ostream& out, const host::CallResult& result) {
    RecordWriter(out).result(result);
    out << '\n';
}

}  // namespace tool
