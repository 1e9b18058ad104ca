#include <cstddef>
#include <memory>
#include <span>

#include "host-kit/run.h"

int main(int argc, char** argv) {
    const std::unique_ptr<hostkit::Inspector> host = hostkit::makeInspector();
    return hostkit::run(*host, std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
}
