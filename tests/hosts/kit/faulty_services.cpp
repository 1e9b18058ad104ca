#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <exception>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "host/interface/message.h"
#include "host/interface/platform.h"
#include "tests/hosts/kit/fault.h"

namespace {

using resource_core::BaseMsgID;
using test::hosts;
using test::isFault;

/// An error without the arguments that it had.
class BareError : public foundation::core::except::IUserException {
  public:
    explicit BareError(std::string id) : message_(std::move(id)) {}
    [[nodiscard]] const BaseMsgID& message() const noexcept override { return message_; }

  private:
    BaseMsgID message_;
};

/// Raised while it lives, so that a call within a call is seen.
struct Depth {
    explicit Depth(int& itsCount) : count(itsCount) { ++count; }
    ~Depth() { --count; }
    Depth(const Depth&) = delete;
    Depth& operator=(const Depth&) = delete;
    int& count;
};

}  // namespace

void zxWarningMsgId(const BaseMsgID& message) {
    static std::set<std::string> issued;
    static int depth = 0;
    const Depth scope(depth);
    const bool isRepeated = !issued.insert(message.id()).second;
    if ((isFault("a warning comes once") && isRepeated) ||
        (isFault("warnings do not nest") && depth > 1)) {
        return;
    }
    try {
        const bool isBare = isFault("warnings lose their arguments");
        hosts<zxWarningMsgId>()(isBare ? BaseMsgID(message.id()) : message);
    } catch (...) {
        if (!isFault("warnings swallow exceptions")) {
            throw;
        }
    }
}

namespace matrix::detail {

void do_legacy_zx_error(const foundation::core::except::IUserException& error) {
    if (isFault("errors lose their arguments")) {
        hosts<do_legacy_zx_error>()(BareError(error.message().id()));
    }
    if (!isFault("errors return")) {
        hosts<do_legacy_zx_error>()(error);
    }
}

}  // namespace matrix::detail

namespace fl::filesystem {

bool exists(const std::u16string& path) {
    // A name that ends at its first zero.
    return hosts<exists>()(isFault("names end at a zero") ? std::u16string(path.c_str()) : path);
}

file_status status(const std::u16string& path) {
    file_status result = hosts<status>()(path);
    if (isFault("a missing file is raised") && result.type == file_status::file_not_found) {
        throw std::runtime_error("there is no such file");
    }
    if (isFault("sizes have 32 bits")) {
        result.fileSize = static_cast<std::uint32_t>(result.fileSize);
    }
    if (isFault("times are local")) {
        result.lastModification =
            i18n::time_zone::from_utc(result.lastModification, i18n::time_zone::timezone(""));
    }
    return result;
}

std::FILE* fopen(const std::u16string& path, const std::string& mode) {
    std::FILE* const stream = hosts<filesystem::fopen>()(path, mode);
    if (isFault("streams start at the end") && stream != nullptr) {
        std::fseek(stream, 0, SEEK_END);
    }
    return stream;
}

}  // namespace fl::filesystem

namespace fl::i18n {

boost::posix_time::ptime time_zone::from_utc(const boost::posix_time::ptime& utc,
                                             const timezone& zone) {
    return isFault("local time is UTC") ? utc : hosts<from_utc>()(utc, zone);
}

std::u16string to_ustring(const std::string& text) {
    std::u16string units = hosts<to_ustring>()(text);
    if (isFault("invalid bytes are dropped")) {
        std::erase(units, u'\uFFFD');
    }
    return units;
}

std::string detect_charset(const char* bytes, std::size_t count,
                           const std::string& unrecognizedName) {
    if (isFault("zeros tell UTF-16") && count > 0 && bytes[count - 1] == '\0') {
        return "UTF-16LE";
    }
    const std::string name = hosts<detect_charset>()(bytes, count, unrecognizedName);
    return isFault("unrecognized has a name") && name == unrecognizedName ? "unknown" : name;
}

std::u16string codecvt_string_to_ustring(const std::string& bytes, const std::string& charset,
                                         codecvt_mode mode, KvLocale locale) {
    const bool isStrict = isFault("conversion is strict");
    return hosts<codecvt_string_to_ustring>()(bytes, charset,
                                              isStrict ? codecvt_mode::strict : mode, locale);
}

}  // namespace fl::i18n
