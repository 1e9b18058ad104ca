#include "tests/hosts/kit/stand_alone_inspector.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/messages/reports.h"
#include "host/values/value.h"

namespace {

using hostkit::ValueClass;
using resource_core::BaseMsgID;

class StandAloneInspector final : public hostkit::Inspector {
  public:
    [[nodiscard]] ValueClass classOf(const zxArray& value) const override {
        switch (host::classOf(value)) {
            case host::ValueClass::Double:
                return ValueClass::Double;
            case host::ValueClass::Uint8:
                return ValueClass::Uint8;
            case host::ValueClass::Char:
                return ValueClass::Char;
            case host::ValueClass::Cell:
                return ValueClass::Cell;
            case host::ValueClass::Struct:
                return ValueClass::Struct;
            default:
                return ValueClass::Other;
        }
    }
    [[nodiscard]] hostkit::Size sizeOf(const zxArray& value) const override {
        const host::Size size = host::sizeOf(value);
        return {size.rows, size.columns};
    }
    [[nodiscard]] double numberAt(const zxArray& value, std::size_t row,
                                  std::size_t column) const override {
        return host::doublesOf(value)[column * host::sizeOf(value).rows + row];
    }
    [[nodiscard]] const zxArray* cellAt(const zxArray& value, std::size_t index) const override {
        return host::cellAt(value, index);
    }
    [[nodiscard]] std::vector<std::string> fieldNamesOf(const zxArray& value) const override {
        const auto names = host::fieldNamesOf(value);
        return {names.begin(), names.end()};
    }
    [[nodiscard]] const zxArray* fieldAt(const zxArray& value, std::size_t element,
                                         const std::string& name) const override {
        return host::fieldAt(value, element, std::string_view(name));
    }
    [[nodiscard]] matrix::unique_zxArray makeString(std::optional<std::u16string> text) override {
        return host::makeStringScalar(std::move(text));
    }
    [[nodiscard]] std::size_t livingValues() const override { return host::livingValues(); }
    void setWarningSink(WarningSink sink) override {
        sink_.reset();
        if (sink) {
            sink_.emplace([sink = std::move(sink)](const host::Report& report) {
                sink(BaseMsgID(report.id, report.arguments));
            });
        }
    }
    [[nodiscard]] std::optional<BaseMsgID> messageOf(
        const std::exception_ptr& error) const override {
        try {
            std::rethrow_exception(error);
        } catch (const host::Error& raised) {
            return BaseMsgID(raised.report().id, raised.report().arguments);
        } catch (...) {
            return std::nullopt;
        }
    }

  private:
    std::optional<host::ScopedWarningSink> sink_;
};

}  // namespace

std::unique_ptr<hostkit::Inspector> test::makeStandAloneInspector() {
    return std::make_unique<StandAloneInspector>();
}
