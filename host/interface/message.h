#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/interface/export.h"

// How the module reports to its host: by message ID and arguments, never by a text of its own.

namespace resource_core {

/// A message of the host's catalogue: its ID, such as "quorra:corvinex:statFailure", and the
/// ordered arguments for the placeholders of its text, each an unsigned number or a text.
class BaseMsgID {
  public:
    /// A number, or a text where there is one.
    struct Argument {
        // Lists of arguments are written as plain numbers and texts.
        // NOLINTBEGIN(google-explicit-constructor)
        Argument(std::uint64_t itsNumber) noexcept : number(itsNumber) {}
        Argument(std::u16string itsText) noexcept : text(std::move(itsText)) {}
        // NOLINTEND(google-explicit-constructor)
        friend bool operator==(const Argument&, const Argument&) = default;

        std::uint64_t number = 0;
        std::optional<std::u16string> text;
    };

    explicit BaseMsgID(std::string id, std::vector<Argument> arguments = {})
        : id_(std::move(id)), arguments_(std::move(arguments)) {}

    [[nodiscard]] const std::string& id() const noexcept { return id_; }
    [[nodiscard]] const std::vector<Argument>& arguments() const noexcept { return arguments_; }

  private:
    std::string id_;
    std::vector<Argument> arguments_;
};

}  // namespace resource_core

namespace foundation::core::except {

/// An exception that carries a message ID.
class ZX_HOST_API IUserException {
  public:
    virtual ~IUserException() = default;
    [[nodiscard]] virtual const resource_core::BaseMsgID& message() const noexcept = 0;

  protected:
    IUserException() = default;
    IUserException(const IUserException&) = default;
    IUserException& operator=(const IUserException&) = default;
    IUserException(IUserException&&) = default;
    IUserException& operator=(IUserException&&) = default;
};

}  // namespace foundation::core::except

/// Issues a warning and returns; the read goes on.
ZX_HOST_API void zxWarningMsgId(const resource_core::BaseMsgID& message);

namespace matrix::detail {

/// Raises an error in the host. It does not return to the module; should it return all the same,
/// the module throws the same exception itself.
ZX_HOST_API void do_legacy_zx_error(const foundation::core::except::IUserException& error);

}  // namespace matrix::detail
