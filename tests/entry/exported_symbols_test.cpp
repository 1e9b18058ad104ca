#include <cxxabi.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>

#include "host/values/value.h"
#include "tests/support/elf_image.h"
#include "tests/support/module_call.h"

namespace {

using Names = std::set<std::string>;
using test::DynamicSymbols;

DynamicSymbols symbolsOf(const std::filesystem::path& library) {
    return test::ElfImage(library).symbols();
}

/// The readable name without its parameters.
std::string functionOf(const std::string& symbol) {
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    int status = 0;
    const std::unique_ptr<char, Free> readable(
        abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status));
    const std::string text = status == 0 ? readable.get() : symbol;
    return text.substr(0, text.find('('));
}

Names functionsOf(const Names& symbols) {
    Names functions;
    for (const std::string& symbol : symbols) {
        functions.insert(functionOf(symbol));
    }
    return functions;
}

/// The stand-alone host that this program runs with.
std::filesystem::path hostLibrary() {
    Dl_info information{};
    if (::dladdr(reinterpret_cast<const void*>(&host::livingValues), &information) == 0) {
        throw std::runtime_error("the host's library is not known");
    }
    return information.dli_fname;
}

const Names hostOperations{
    "Quillon::String::getString",
    "Quillon::String::isScalarText",
    "Quillon::String::isString",
    "fl::filesystem::exists",
    "fl::filesystem::fopen",
    "fl::filesystem::status",
    "fl::i18n::codecvt_string_to_ustring",
    "fl::i18n::detect_charset",
    "fl::i18n::time_zone::from_utc",
    "fl::i18n::time_zone::timezone::timezone",
    "fl::i18n::to_ustring",
    "matrix::create",
    "matrix::destroyArray",
    "matrix::detail::do_legacy_zx_error",
    "matrix::detail::noninlined::zx_array_api::zxCreateCellArray",
    "matrix::detail::noninlined::zx_array_api::zxCreateCharArray",
    "matrix::detail::noninlined::zx_array_api::zxCreateDoubleScalar",
    "matrix::detail::noninlined::zx_array_api::zxCreateNumericArray",
    "matrix::detail::noninlined::zx_array_api::zxCreateString",
    "matrix::detail::noninlined::zx_array_api::zxCreateStructArray",
    "matrix::detail::noninlined::zx_array_api::zxGetElementCount",
    "matrix::detail::noninlined::zx_array_api::zxGetElements",
    "matrix::detail::noninlined::zx_array_api::zxGetScalar",
    "matrix::detail::noninlined::zx_array_api::zxSetCell",
    "matrix::detail::noninlined::zx_array_api::zxSetField",
    "matrix::to_korvel",
    "zxWarningMsgId",
};

}  // namespace

TEST(DynamicSymbolTable, ExportsTheEntryTheVersionAndTheNameLookupOnly) {
    const DynamicSymbols module = symbolsOf(test::modulePath());
    EXPECT_EQ(functionsOf(module.defined),
              (Names{"search_map", "zekFunction", "zekfilerequiredapiversion"}));
    EXPECT_EQ(module.defined.size(), 3U);
    EXPECT_TRUE(module.defined.contains("zekFunction"));
    EXPECT_TRUE(module.defined.contains("zekfilerequiredapiversion"));
}

TEST(DynamicSymbolTable, AsksTheHostForItsOperationsAndNothingElse) {
    const DynamicSymbols module = symbolsOf(test::modulePath());
    const DynamicSymbols host = symbolsOf(hostLibrary());
    Names shared;
    std::set_intersection(module.undefined.begin(), module.undefined.end(), host.defined.begin(),
                          host.defined.end(), std::inserter(shared, shared.end()));
    Names asked = functionsOf(shared);
    // What both take from the standard library and what a sanitizer adds belongs to no host.
    std::erase_if(asked, [](const std::string& name) {
        return name.find("std::") == 0 || name.find("operator") == 0 || name.find("__") == 0;
    });
    EXPECT_EQ(asked, hostOperations);
}

TEST(DynamicSymbolTable, NamesNoHostFacilityOutsideTheHostsNamespaces) {
    const DynamicSymbols module = symbolsOf(test::modulePath());
    for (const std::string& function : functionsOf(module.undefined)) {
        const bool isOfHostProgram = function.find("host::") != std::string::npos;
        EXPECT_FALSE(isOfHostProgram) << function;
    }
}

TEST(DynamicSymbolTable, OfTheHostHasNothingThatFailsOnCommand) {
    const DynamicSymbols host = symbolsOf(hostLibrary());
    ASSERT_FALSE(host.defined.empty());
    for (const std::string& function : functionsOf(host.defined)) {
        EXPECT_EQ(function.find("Fault"), std::string::npos) << function;
        EXPECT_EQ(function.find("OperationFailed"), std::string::npos) << function;
        EXPECT_EQ(function.find("callsOf"), std::string::npos) << function;
    }
}

// The C library ends the process where it has no memory to note one.
TEST(DynamicSymbolTable, OfTheHostRegistersNoDestructorOfAThread) {
    for (const std::string& symbol : symbolsOf(hostLibrary()).undefined) {
        EXPECT_EQ(symbol.find("thread_atexit"), std::string::npos) << symbol;
    }
}

TEST(DynamicSymbolTable, UsesNothingOfTheTiffLibrary) {
    const DynamicSymbols module = symbolsOf(test::modulePath());
    Names used;
    for (const std::string& name : module.undefined) {
        if (name.starts_with("TIFF") || name.starts_with("_TIFF")) {
            used.insert(name);
        }
    }
    EXPECT_EQ(used, Names{});
}
