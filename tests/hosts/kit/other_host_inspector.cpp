#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "examples/other-host/other_host.h"
#include "host-kit/inspector.h"

namespace {

using hostkit::ValueClass;

class OtherHostInspector final : public hostkit::Inspector {
  public:
    [[nodiscard]] ValueClass classOf(const zxArray& value) const override {
        constexpr ValueClass classes[] = {ValueClass::Double, ValueClass::Uint8,
                                          ValueClass::Char,   ValueClass::Cell,
                                          ValueClass::Struct, ValueClass::Other};
        return classes[value.data.index()];
    }
    [[nodiscard]] hostkit::Size sizeOf(const zxArray& value) const override {
        return {value.rows, value.columns};
    }
    [[nodiscard]] double numberAt(const zxArray& value, std::size_t row,
                                  std::size_t column) const override {
        return std::get<std::vector<double>>(value.data).at(column * value.rows + row);
    }
    [[nodiscard]] const zxArray* cellAt(const zxArray& value, std::size_t index) const override {
        return std::get<zxArray::Slots>(value.data).at(index).get();
    }
    [[nodiscard]] std::vector<std::string> fieldNamesOf(const zxArray& value) const override {
        return std::get<zxArray::Structs>(value.data).names;
    }
    [[nodiscard]] const zxArray* fieldAt(const zxArray& value, std::size_t element,
                                         const std::string& name) const override {
        const auto& [names, elements] = std::get<zxArray::Structs>(value.data);
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (names[i] == name) {
                return elements.at(element)[i].get();
            }
        }
        return nullptr;
    }
    [[nodiscard]] matrix::unique_zxArray makeString(std::optional<std::u16string> text) override {
        return matrix::unique_zxArray(new zxArray(1, 1, zxArray::String(std::move(text))));
    }
    [[nodiscard]] std::size_t livingValues() const override { return zxArray::living; }
    void setWarningSink(WarningSink sink) override { other_host::setWarningSink(std::move(sink)); }
    [[nodiscard]] std::optional<resource_core::BaseMsgID> messageOf(
        const std::exception_ptr& error) const override {
        try {
            std::rethrow_exception(error);
        } catch (const other_host::Error& raised) {
            return raised.message;
        } catch (...) {
            return std::nullopt;
        }
    }
};

}  // namespace

std::unique_ptr<hostkit::Inspector> hostkit::makeInspector() {
    return std::make_unique<OtherHostInspector>();
}
