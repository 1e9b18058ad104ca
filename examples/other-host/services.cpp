#include <sys/stat.h>

#include <boost/date_time/posix_time/conversion.hpp>
#include <ctime>
#include <filesystem>

#include "corvinex/host/interface/platform.h"
#include "examples/other-host/other_host.h"

namespace {

using boost::posix_time::ptime;
using fl::filesystem::file_status;

std::function<void(const other_host::Message&)> currentSink;

/// The bytes of a file name; nothing when no file can have it.
std::optional<std::string> nativeName(const std::u16string& path) {
    try {
        std::string name = std::filesystem::path(path).string();
        return name.find('\0') == std::string::npos ? std::optional(name) : std::nullopt;
    } catch (const std::filesystem::filesystem_error&) {  // a surrogate without its partner
        return std::nullopt;
    }
}

}  // namespace

std::u16string other_host::utf16Of(std::string_view utf8, std::size_t* invalidParts) {
    std::u16string text;
    std::size_t i = 0;
    while (i < utf8.size()) {
        const auto lead = static_cast<unsigned char>(utf8[i++]);
        bool isValid = lead < 0x80 || (lead >= 0xC2 && lead <= 0xF4);
        unsigned left = !isValid || lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        char32_t character = left == 0 ? lead : lead & (0x3FU >> left);
        // The second byte has less room where the first would allow overlong forms, surrogates or
        // numbers beyond the last character.
        unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
        unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
        for (; isValid && left > 0; --left) {
            const unsigned next = i < utf8.size() ? static_cast<unsigned char>(utf8[i]) : 0;
            isValid = next >= lowest && next <= highest;
            i += isValid ? 1 : 0;
            character = character << 6 | (next & 0x3F);
            lowest = 0x80;
            highest = 0xBF;
        }
        if (!isValid) {
            character = 0xFFFD;
            if (invalidParts != nullptr) {
                ++*invalidParts;
            }
        }
        if (character > 0xFFFF) {
            text += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
            character = 0xDC00 + (character & 0x3FF);
        }
        text += static_cast<char16_t>(character);
    }
    return text;
}

void other_host::setWarningSink(std::function<void(const Message&)> sink) {
    currentSink = std::move(sink);
}

void zxWarningMsgId(const resource_core::BaseMsgID& message) {
    // A copy: the sink may set another one.
    if (const auto sink = currentSink) {
        sink(message);
    }
}

void matrix::detail::do_legacy_zx_error(const foundation::core::except::IUserException& error) {
    throw other_host::Error(error.message());
}

bool fl::filesystem::exists(const std::u16string& path) {
    return status(path).type != file_status::file_not_found;
}

file_status fl::filesystem::status(const std::u16string& path) {
    const std::optional<std::string> name = nativeName(path);
    struct stat record {};
    if (!name || ::stat(name->c_str(), &record) != 0) {
        return {};
    }
    return {.type = S_ISREG(record.st_mode)   ? file_status::regular_file
                    : S_ISDIR(record.st_mode) ? file_status::directory_file
                                              : file_status::other_file,
            .lastModification = boost::posix_time::from_time_t(record.st_mtime),
            .fileSize = static_cast<std::uint64_t>(record.st_size)};
}

std::FILE* fl::filesystem::fopen(const std::u16string& path, const std::string& mode) {
    const std::optional<std::string> name = nativeName(path);
    return name ? std::fopen(name->c_str(), mode.c_str()) : nullptr;
}

fl::i18n::time_zone::timezone::timezone(const std::string& name) : name_(name) {}

ptime fl::i18n::time_zone::from_utc(const ptime& utc, const timezone& /*zone*/) {
    if (utc.is_special()) {
        return utc;
    }
    const std::time_t seconds = boost::posix_time::to_time_t(utc);
    std::tm local{};
    ::localtime_r(&seconds, &local);
    return utc + boost::posix_time::seconds(local.tm_gmtoff);
}

// This host takes narrow texts for UTF-8 in every locale.
std::u16string fl::i18n::to_ustring(const std::string& text) {
    return other_host::utf16Of(text);
}

std::string fl::i18n::detect_charset(const char* bytes, std::size_t count,
                                     const std::string& unrecognizedName) {
    std::size_t invalidParts = 0;
    other_host::utf16Of({bytes, count}, &invalidParts);
    return count > 0 && invalidParts == 0 ? "UTF-8" : unrecognizedName;
}

// The module asks for nothing but lenient conversions.
std::u16string fl::i18n::codecvt_string_to_ustring(const std::string& bytes,
                                                   const std::string& charset,
                                                   codecvt_mode /*mode*/, KvLocale /*locale*/) {
    if (charset == "UTF-8") {
        return other_host::utf16Of(bytes);
    }
    std::u16string latin1;
    for (const char byte : bytes) {
        latin1 += static_cast<unsigned char>(byte);
    }
    return latin1;
}
