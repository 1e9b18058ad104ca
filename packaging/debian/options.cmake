# How the build for the Debian packages is configured: cmake -C packaging/debian/options.cmake. See
# scripts/package.
execute_process(COMMAND dpkg-architecture --query DEB_HOST_MULTIARCH
  OUTPUT_VARIABLE multiarch OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

set(CORVINEX_DEBIAN_PACKAGES ON CACHE BOOL "")
set(CMAKE_BUILD_TYPE Release CACHE STRING "")
set(CMAKE_INSTALL_PREFIX /usr CACHE PATH "")
set(CMAKE_INSTALL_LIBDIR lib/${multiarch} CACHE PATH "")
# The loader finds libraries in that folder by itself.
set(CMAKE_INSTALL_RPATH "" CACHE STRING "")
# One package for the libraries, and one for the tool and the module: libraries of two versions can be
# installed side by side, as Debian asks, two files of one name cannot.
set(CORVINEX_TOOL_COMPONENT tool CACHE STRING "")
set(CORVINEX_ZSH_FOLDER share/zsh/vendor-completions CACHE STRING "")
