#pragma once

#include "host/interface/array.h"

// The plug-in convention: what a module exports and a host calls.

extern "C" {

/// Reads the tags of one file. inputs[0] is the file name (text), inputs[1] the byte position of
/// the TIFF header, inputs[2] the number of directories to skip, inputs[3] the largest number of
/// directories to keep in one set, 0 for no limit (numbers). outputs[0] receives an N x 1 struct
/// array, or an empty double; it is written only on success.
ZX_HOST_API void zekFunction(int outputCount, zxArray* outputs[], int inputCount,
                             const zxArray* inputs[]);

/// The host release and the version of the array interface that the module was built for.
ZX_HOST_API void zekfilerequiredapiversion(unsigned int* builtByRelease,
                                           unsigned int* targetApiVersion);
}
