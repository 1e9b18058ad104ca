#include "entry/values/host_value.h"
#include "file/tag_file.h"

// From a file that has been read to the host value of the request.

namespace corvinex {

HostArray TagFile::repackageIfds() {
    return !ifdTree || ifdTree->size() == 0 ? makeEmptyNumbers() : ifdTree->repackageIfds();
}

}  // namespace corvinex
