// plugin_loader PLUGIN MODULE: loads a plug-in as interpreters do, so that its symbols and those of
// its libraries are not visible to what is loaded later, and has it load the module.
#include <dlfcn.h>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: plugin_loader PLUGIN MODULE\n";
        return 2;
    }
    void* const plugin = ::dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (plugin == nullptr) {
        std::cerr << ::dlerror() << '\n';
        return 2;
    }
    using Load = int(const char* module);
    auto* const load = reinterpret_cast<Load*>(::dlsym(plugin, "loadModule"));
    return load != nullptr ? load(argv[2]) : 2;
}
