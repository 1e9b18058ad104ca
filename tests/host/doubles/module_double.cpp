#include <cstdint>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>

#include "host/interface/message.h"
#include "host/interface/platform.h"
#include "host/interface/plugin.h"

// A module for the tests of the host: the file name says what it does.

namespace {

using namespace matrix::detail::noninlined::zx_array_api;
using resource_core::BaseMsgID;

class TestError : public foundation::core::except::IUserException, public std::exception {
  public:
    [[nodiscard]] const BaseMsgID& message() const noexcept override { return message_; }

  private:
    BaseMsgID message_{"quorra:corvinex:badTiffIfdOffset", {std::uint64_t{9}, std::uint64_t{8}}};
};

void raise() {
    const TestError error;
    matrix::detail::do_legacy_zx_error(error);
    throw error;
}

void warn(std::uint64_t number) {
    zxWarningMsgId(BaseMsgID("quorra:corvinex:badSubIfdSeek", {number}));
}

/// The three numbers, as they came.
zxArray* numbers(const zxArray* inputs[]) {
    const std::size_t size[] = {1, 3};
    matrix::unique_zxArray row(
        zxCreateNumericArray(2, size, zxClassID::Double, zxComplexity::Real));
    for (std::size_t i = 0; i < 3; ++i) {
        static_cast<double*>(zxGetElements(row.get()))[i] = zxGetScalar(inputs[i + 1]);
    }
    return row.release();
}

void act(const std::u16string& name, zxArray* outputs[], const zxArray* inputs[]) {
    if (name == u"warn") {
        warn(1);
        warn(2);
    } else if (name == u"raise") {
        warn(1);
        raise();
    } else if (name == u"out of memory") {
        throw std::bad_alloc();
    } else if (name == u"standard error") {
        throw std::runtime_error("the reason");
    } else if (name == u"anything") {
        throw 7;
    } else if (name == u"no output") {
        return;
    } else if (name == u"output, then an error") {
        outputs[0] = numbers(inputs);
        raise();
    }
    outputs[0] = numbers(inputs);
}

}  // namespace

extern "C" {

void zekFunction(int, zxArray* outputs[], int, const zxArray* inputs[]) {
    const auto* const units = static_cast<const char16_t*>(zxGetElements(inputs[0]));
    act(std::u16string(units, zxGetElementCount(inputs[0])), outputs, inputs);
}

void zekfilerequiredapiversion(unsigned int* builtByRelease, unsigned int* targetApiVersion) {
    *builtByRelease = 1;
    *targetApiVersion = 0x08000000;
}
}
