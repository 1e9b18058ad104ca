#include "tests/hosts/kit/stand_alone_inspector.h"

std::unique_ptr<hostkit::Inspector> hostkit::makeInspector() {
    return test::makeStandAloneInspector();
}
