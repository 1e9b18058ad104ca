#include <boost/numeric/conversion/converter_policies.hpp>
#include <cstdint>
#include <string>
#include <utility>

#include "entry/reports/fatal_errors.h"
#include "entry/values/host_value.h"
#include "file/tag_file.h"
#include "format/numeric_conversion.h"
#include "host/interface/plugin.h"

// The two functions that a host calls.

namespace {

constexpr unsigned int hostRelease = 1;
constexpr unsigned int arrayInterfaceVersion = 0x08000000;

/// One request: reads the file and stores the packaged result in output while the file is still
/// open; the file is closed before this returns or raises. False when a number did not fit its type
/// on the way.
bool readTags(std::u16string filename, double headerOffset, double ifdsToSkip, double maxIfdsPerSet,
              zxArray*& output) {
    corvinex::TagFile file(std::move(filename), corvinex::truncateTo<std::uint64_t>(headerOffset),
                           corvinex::truncateTo<std::uint64_t>(ifdsToSkip),
                           corvinex::truncateTo<std::uint64_t>(maxIfdsPerSet));
    try {
        file.readThroughTagFile();
        output = file.repackageIfds().release();
        return true;
    } catch (const boost::numeric::bad_numeric_cast&) {
        return false;
    }
}

}  // namespace

void zekFunction(int /*outputCount*/, zxArray* outputs[], int /*inputCount*/,
                 const zxArray* inputs[]) {
    // A first argument that is no text leaves the name empty, and no file has an empty name.
    std::u16string filename(corvinex::getTextArgument(*inputs[0]));
    const double headerOffset = corvinex::getNumberArgument(*inputs[1]);
    const double ifdsToSkip = corvinex::getNumberArgument(*inputs[2]);
    const double maxIfdsPerSet = corvinex::getNumberArgument(*inputs[3]);
    if (!readTags(std::move(filename), headerOffset, ifdsToSkip, maxIfdsPerSet, outputs[0])) {
        corvinex::raiseFatal(quorra::corvinex::argumentOutOfBounds());
    }
}

void zekfilerequiredapiversion(unsigned int* builtByRelease, unsigned int* targetApiVersion) {
    *builtByRelease = hostRelease;
    *targetApiVersion = arrayInterfaceVersion;
}
