// faulty-host-kit FAULT [OPTION...]: the kit, run on a host with one fault.

#include <cstddef>
#include <iostream>
#include <memory>
#include <span>

#include "host-kit/run.h"
#include "tests/hosts/kit/fault.h"
#include "tests/hosts/kit/stand_alone_inspector.h"

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: faulty-host-kit FAULT [OPTION...]\n";
        return 2;
    }
    test::chosenFault = argv[1];
    const std::unique_ptr<hostkit::Inspector> host = test::makeStandAloneInspector();
    return hostkit::run(*host, std::span(argv, static_cast<std::size_t>(argc)).subspan(2));
}
