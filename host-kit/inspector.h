#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/interface/array.h"
#include "host/interface/message.h"

namespace hostkit {

enum class ValueClass { Double, Uint8, Char, Cell, Struct, Other };

struct Size {
    std::size_t rows = 0;
    std::size_t columns = 0;
    friend bool operator==(const Size&, const Size&) = default;
};

/// What the kit has to know of a host besides the operations: the module builds values and never
/// reads them back, so no operation does. The author of a host derives from it.
class Inspector {
  public:
    using WarningSink = std::function<void(const resource_core::BaseMsgID&)>;

    Inspector() = default;
    virtual ~Inspector() = default;
    Inspector(const Inspector&) = delete;
    Inspector& operator=(const Inspector&) = delete;

    [[nodiscard]] virtual ValueClass classOf(const zxArray& value) const = 0;
    [[nodiscard]] virtual Size sizeOf(const zxArray& value) const = 0;
    /// The element of a double array at a zero-based row and column.
    [[nodiscard]] virtual double numberAt(const zxArray& value, std::size_t row,
                                          std::size_t column) const = 0;
    /// The cell at a zero-based linear index; null, or an empty double, where nothing was stored.
    [[nodiscard]] virtual const zxArray* cellAt(const zxArray& value, std::size_t index) const = 0;
    /// The field names of a struct array, in order.
    [[nodiscard]] virtual std::vector<std::string> fieldNamesOf(const zxArray& value) const = 0;
    /// A field of an element; null, or an empty double, where it was never set.
    [[nodiscard]] virtual const zxArray* fieldAt(const zxArray& value, std::size_t element,
                                                 const std::string& name) const = 0;
    /// A new string scalar; nothing makes the missing string. Null when the host has no strings.
    [[nodiscard]] virtual matrix::unique_zxArray makeString(std::optional<std::u16string> text) = 0;
    /// How many values have been made and not yet destroyed, stored ones included.
    [[nodiscard]] virtual std::size_t livingValues() const = 0;
    /// Has the host hand its warnings to sink from now on; an empty sink drops them.
    virtual void setWarningSink(WarningSink sink) = 0;
    /// The message of an exception that do_legacy_zx_error raised; nothing for any other.
    [[nodiscard]] virtual std::optional<resource_core::BaseMsgID> messageOf(
        const std::exception_ptr& error) const = 0;
};

/// The inspector of the host that the program is linked with. The author of a host defines it.
std::unique_ptr<Inspector> makeInspector();

}  // namespace hostkit
