#include "tool/call_record.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/platform/unicode.h"
#include "host/values/value.h"
#include "tool/output_buffer.h"
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

/// Memory for the JSON library, whose own allocator gives null where there is none and is believed.
class JsonMemory {
  public:
    static void* Malloc(std::size_t size) { return ::operator new(size); }
    static void* Realloc(void* block, std::size_t before, std::size_t size) {
        void* const larger = Malloc(size);
        std::copy_n(static_cast<const std::byte*>(block), std::min(before, size),
                    static_cast<std::byte*>(larger));
        Free(block);
        return larger;
    }
    static void Free(void* block) { ::operator delete(block); }
};

using JsonBuffer = rapidjson::GenericStringBuffer<rapidjson::UTF8<>, JsonMemory>;

template <class Stream>
using JsonWriter = rapidjson::Writer<Stream, rapidjson::UTF8<>, rapidjson::UTF8<>, JsonMemory>;

/// A buffer as the JSON library's streams are.
class JsonStream {
  public:
    using Ch = char;
    explicit JsonStream(OutputBuffer& out) : out_(out) {}
    void Put(char c) { out_.append(c); }
    void Flush() { out_.flush(); }

  private:
    OutputBuffer& out_;
};

/// The library writes what holds other things and every text that needs care. Numbers, plain texts
/// and field names, by far the most, go to the buffer ready-made.
class RecordWriter {
  public:
    explicit RecordWriter(OutputBuffer& out) : out_(out), stream_(out), json_(stream_) {}

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

    /// Lets the library set the comma or colon before something ready-made.
    void separate(rapidjson::Type type) { json_.RawValue("", 0, type); }

    void text(std::u16string_view text) {
        separate(rapidjson::kStringType);
        quoted(text);
    }

    void quoted(std::u16string_view text) {
        out_.append('"');
        if (isPlainText(text)) {
            out_.appendAscii(text);
        } else {
            escaped(text);
        }
        out_.append('"');
    }

    /// The library writes valid text only: the stretches between lone surrogates are its own, the
    /// escapes are put between them. A long stretch goes out in parts, so that it does not become a
    /// second long text.
    void escaped(std::u16string_view text) {
        constexpr std::size_t longStretch = 4096;
        std::size_t from = 0;
        std::size_t i = 0;
        while (i < text.size()) {
            if (i - from >= longStretch) {
                out_.append(unquotedJson(text.substr(from, i - from)));
                from = i;
            }
            if (isSurrogate(text[i]) && !isPairAt(text, i)) {
                out_.append(unquotedJson(text.substr(from, i - from)));
                // Shown alone, a surrogate is its \uXXXX escape.
                out_.append(visibleText(text.substr(i, 1)));
                from = i + 1;
            }
            i += isPairAt(text, i) ? 2 : 1;
        }
        out_.append(unquotedJson(text.substr(from)));
    }

    static std::string quotedJson(std::string_view utf8) {
        JsonBuffer buffer;
        JsonWriter<JsonBuffer> json(buffer);
        json.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
        return {buffer.GetString(), buffer.GetSize()};
    }

    static std::string unquotedJson(std::u16string_view valid) {
        const std::string quoted = quotedJson(host::displayText(valid));
        return quoted.substr(1, quoted.size() - 2);
    }

    void report(const host::Report& report) {
        json_.StartObject();
        key("id");
        string(report.id);
        key("arguments");
        json_.StartArray();
        for (const auto& argument : report.arguments) {
            if (argument.text) {
                text(*argument.text);
            } else {
                json_.Uint64(argument.number);
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
        switch (host::classOf(*value)) {
            case host::ValueClass::Double:
                doubles(*value);
                break;
            case host::ValueClass::Uint8:
                bytes(*value);
                break;
            case host::ValueClass::Char:
                characters(*value);
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
    }

    /// What stands before the data of a value whose start up to its size is given.
    void readyHead(std::string_view start, host::Size size) {
        separate(rapidjson::kObjectType);
        out_.append(start);
        out_.appendNumber(std::uint64_t{size.rows});
        out_.append(',');
        out_.appendNumber(std::uint64_t{size.columns});
        out_.append(R"(],"data":)");
    }

    void doubles(const zxArray& value) {
        const auto data = host::doublesOf(value);
        if (const host::Size size = host::sizeOf(value); size == host::Size{1, 1}) {
            separate(rapidjson::kObjectType);
            out_.append(R"({"class":"double","size":[1,1],"data":[)");
        } else {
            readyHead(R"({"class":"double","size":[)", size);
            out_.append('[');
        }
        for (std::size_t i = 0; i < data.size(); ++i) {
            if (i > 0) {
                out_.append(',');
            }
            number(data[i]);
        }
        out_.append("]}");
    }

    void number(double value) {
        const bool isName = !std::isfinite(value);
        if (isName) {
            out_.append('"');
        }
        out_.appendNumber(value);
        if (isName) {
            out_.append('"');
        }
    }

    void bytes(const zxArray& value) {
        const auto data = host::bytesOf(value);
        readyHead(R"({"class":"uint8","size":[)", host::sizeOf(value));
        out_.append('[');
        for (std::size_t i = 0; i < data.size(); ++i) {
            if (i > 0) {
                out_.append(',');
            }
            out_.appendNumber(std::uint64_t{data[i]});
        }
        out_.append("]}");
    }

    void characters(const zxArray& value) {
        readyHead(R"({"class":"char","size":[)", host::sizeOf(value));
        quoted(host::textOf(value));
        out_.append('}');
    }

    void cells(const zxArray& cell) {
        const host::Size size = host::sizeOf(cell);
        json_.StartObject();
        head("cell", size);
        key("data");
        json_.StartArray();
        for (std::size_t i = 0; i < size.rows * size.columns; ++i) {
            value(host::cellAt(cell, i));
        }
        json_.EndArray();
        json_.EndObject();
    }

    void elements(const zxArray& array) {
        const host::Size size = host::sizeOf(array);
        const std::vector<std::string> names = quotedNames(array);
        json_.StartObject();
        head("struct", size);
        key("fields");
        json_.StartArray();
        for (const std::string& name : names) {
            separate(rapidjson::kStringType);
            out_.append(name);
        }
        json_.EndArray();
        key("data");
        json_.StartArray();
        for (std::size_t element = 0; element < size.rows * size.columns; ++element) {
            json_.StartObject();
            for (std::size_t field = 0; field < names.size(); ++field) {
                separate(rapidjson::kStringType);
                out_.append(names[field]);
                value(host::fieldAt(array, element, field));
            }
            json_.EndObject();
        }
        json_.EndArray();
        json_.EndObject();
    }

    /// The field names as JSON strings, made once for all elements.
    static std::vector<std::string> quotedNames(const zxArray& array) {
        std::vector<std::string> quoted;
        for (const std::string& name : host::fieldNamesOf(array)) {
            quoted.push_back(quotedJson(name));
        }
        return quoted;
    }

    OutputBuffer& out_;
    JsonStream stream_;
    JsonWriter<JsonStream> json_;
};

}  // namespace

void writeCallRecord(std::ostream& out, const host::CallResult& result) {
    OutputBuffer buffer(out);
    RecordWriter(buffer).result(result);
    buffer.append('\n');
}

}  // namespace tool
