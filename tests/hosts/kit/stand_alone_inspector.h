#pragma once

#include <memory>

#include "host-kit/inspector.h"

namespace test {

/// How the kit looks into values of the stand-alone host.
std::unique_ptr<hostkit::Inspector> makeStandAloneInspector();

}  // namespace test
