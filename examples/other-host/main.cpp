// other-host MODULE FILE [HEADER-OFFSET [SKIP [LIMIT]]]: prints the record of one call.

#include <dlfcn.h>

#include <clocale>
#include <cstdlib>
#include <iostream>

#include "corvinex/host/interface/plugin.h"
#include "examples/other-host/other_host.h"

int main(int argc, char** argv) {
    if (argc < 3 || argc > 6) {
        std::cerr << "usage: other-host MODULE FILE [HEADER-OFFSET [SKIP [LIMIT]]]\n";
        return 2;
    }
    static_cast<void>(std::setlocale(LC_ALL, ""));
    void* const module = ::dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    void* const entry = module == nullptr ? nullptr : ::dlsym(module, "zekFunction");
    if (entry == nullptr) {
        std::cerr << "other-host: " << ::dlerror() << '\n';
        return 2;
    }
    const std::u16string name = other_host::utf16Of(argv[2]);
    std::vector<matrix::unique_zxArray> owners;
    owners.push_back(matrix::create(name.data(), name.size()));
    for (int i = 3; i < 6; ++i) {
        const double number = i < argc ? std::strtod(argv[i], nullptr) : 0;
        owners.emplace_back(matrix::detail::noninlined::zx_array_api::zxCreateDoubleScalar(number));
    }
    const zxArray* inputs[] = {owners[0].get(), owners[1].get(), owners[2].get(), owners[3].get()};
    zxArray* outputs[] = {nullptr};
    std::vector<other_host::Message> warnings;
    other_host::setWarningSink([&](const auto& warning) { warnings.push_back(warning); });
    std::optional<other_host::Message> failure;
    try {
        reinterpret_cast<decltype(&zekFunction)>(entry)(1, outputs, 4, inputs);
    } catch (const other_host::Error& error) {
        failure = error.message;
    } catch (const std::exception& error) {
        failure = other_host::Message("", {other_host::utf16Of(error.what())});
    }
    const matrix::unique_zxArray output(outputs[0]);
    other_host::writeCallRecord(std::cout, output.get(), warnings, failure);
    return failure ? 1 : 0;
}
