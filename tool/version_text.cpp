#include "tool/version_text.h"

#include <rapidjson/rapidjson.h>
#include <unicode/uversion.h>

#include <algorithm>
#include <array>
#include <boost/version.hpp>
#include <exception>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <sstream>
#include <string>

#include "host/loading/module.h"
#include "tool/module_location.h"
#include "tool/text_display.h"

namespace tool {
namespace {

std::string icuVersion() {
    UVersionInfo version;
    u_getVersion(version);
    std::array<char, U_MAX_VERSION_STRING_LENGTH> text{};
    u_versionToString(version, text.data());
    return text.data();
}

std::string boostVersion() {
    std::string version = BOOST_LIB_VERSION;
    std::replace(version.begin(), version.end(), '_', '.');
    return version;
}

/// The number is 1000 times the major version and 10 times the minor one.
std::string pugixmlVersion() {
    return std::to_string(PUGIXML_VERSION / 1000) + '.' +
           std::to_string(PUGIXML_VERSION % 1000 / 10);
}

std::string jsonVersion() {
    return std::to_string(NLOHMANN_JSON_VERSION_MAJOR) + '.' +
           std::to_string(NLOHMANN_JSON_VERSION_MINOR) + '.' +
           std::to_string(NLOHMANN_JSON_VERSION_PATCH);
}

std::string rapidJsonVersion() {
    return RAPIDJSON_VERSION_STRING;
}

struct Library {
    const char* name;
    std::string (*version)();
};

/// Shared libraries tell the version that is loaded, headers the one that was compiled.
constexpr std::array libraries{
    Library{"ICU", icuVersion},
    Library{"pugixml", pugixmlVersion},
    Library{"Boost", boostVersion},
    Library{"JSON for Modern C++", jsonVersion},
    Library{"RapidJSON", rapidJsonVersion},
};

std::string moduleText() {
    std::string text = "its place is unknown";
    try {
        text = visibleText(moduleLocation().string());
        std::ostringstream version;
        version << ", interface version 0x" << std::hex << std::setfill('0') << std::setw(8)
                << host::Module(moduleLocation()).apiVersion();
        return text + version.str();
    } catch (const std::exception&) {
        return text + ", cannot be loaded";
    }
}

}  // namespace

void printVersion(std::ostream& out) {
    out << "corvinex " CORVINEX_VERSION "\n  module: " << moduleText() << "\n  libraries: ";
    const char* separator = "";
    for (const Library& library : libraries) {
        out << separator << library.name << ' ' << library.version();
        separator = ", ";
    }
    out << '\n';
}

}  // namespace tool
