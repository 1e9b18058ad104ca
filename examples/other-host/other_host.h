#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "corvinex/host/interface/array.h"
#include "corvinex/host/interface/message.h"

/// A value of this host: a node of a tree whose elements stand in standard containers.
class zxArray {
  public:
    using Slots = std::vector<std::unique_ptr<zxArray>>;  ///< null where nothing was stored
    struct Structs {
        std::vector<std::string> names;
        std::vector<Slots> elements;  ///< each with its fields in the order of names
    };
    using String = std::optional<std::u16string>;  ///< a string scalar; nothing when missing
    using Data = std::variant<std::vector<double>, std::vector<unsigned char>,
                              std::vector<char16_t>, Slots, Structs, String>;

    zxArray(std::size_t itsRows, std::size_t itsColumns, Data itsData)
        : rows(itsRows), columns(itsColumns), data(std::move(itsData)) {
        ++living;
    }
    ~zxArray() { --living; }
    zxArray(const zxArray&) = delete;
    zxArray& operator=(const zxArray&) = delete;

    static inline std::size_t living = 0;

    std::size_t rows;
    std::size_t columns;
    Data data;
};

namespace other_host {

using Message = resource_core::BaseMsgID;

/// Has warnings handed to sink from now on; an empty one drops them.
void setWarningSink(std::function<void(const Message&)> sink);

/// What do_legacy_zx_error raises.
struct Error : std::exception {
    explicit Error(Message itsMessage) : message(std::move(itsMessage)) {}
    Message message;
};

/// UTF-16 of UTF-8; each maximal invalid subpart becomes one U+FFFD and is counted.
std::u16string utf16Of(std::string_view utf8, std::size_t* invalidParts = nullptr);

/// Writes the record of one call (docs/call-record.md). An error without an ID has its text as its
/// only argument.
void writeCallRecord(std::ostream& out, const zxArray* output, const std::vector<Message>& warnings,
                     const std::optional<Message>& error);

}  // namespace other_host
