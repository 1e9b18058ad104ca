# The Debian packages, one for each install component; cpack makes them, because it knows the
# components, and debian/rules would tell the same once more.
# A package that Debian makes itself, revision 1 or later, takes the place of one made here.
set(revision 0corvinex1)
set(version ${PROJECT_VERSION}-${revision})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME corvinex)
set(CPACK_PACKAGE_CONTACT "corvinex maintainers <maintainers@corvinex.invalid>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(components tool runtime dev)
if(CORVINEX_PYTHON)
  list(APPEND components python)
endif()
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/debian/finish_packages.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${revision})
set(CPACK_DEBIAN_PACKAGE_SOURCE corvinex)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The tool's library is in a package that is made at the same time.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME corvinex)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "libcorvinex0 (= ${version})")
set(CPACK_DEBIAN_TOOL_DESCRIPTION "reader of the tags of TIFF, BigTIFF and EXIF files
The command corvinex prints what image files hold beside their pixels: for
people, as JSON, and as a table. Damaged files are read as far as they can be,
and what is wrong with them is told.

The package also holds the module by which numerical environments read tags.")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libcorvinex0)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${CMAKE_CURRENT_BINARY_DIR}/shlibs ${CMAKE_CURRENT_SOURCE_DIR}/debian/triggers)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "libraries that read the tags of TIFF, BigTIFF and EXIF files
One library reads what an image file holds beside its pixels, exactly and
completely. The other one is a host that loads and calls the module of
corvinex.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libcorvinex-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libcorvinex0 (= ${version}), libboost-dev")
set(CPACK_DEBIAN_DEV_PACKAGE_RECOMMENDS "corvinex")
set(CPACK_DEBIAN_DEV_DESCRIPTION "headers of the libraries of corvinex
What programs in C++20 are compiled and linked with that read the tags of
image files, or that load the module of corvinex; with examples.")

# The extension module is for one version of the interpreter. The module that it loads comes with the tool.
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-corvinex)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS ON)
math(EXPR next_python "${Python_VERSION_MINOR} + 1")
string(JOIN ", " CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
  "python3 (>= 3.${Python_VERSION_MINOR}~)" "python3 (<< 3.${next_python})" "python3-numpy"
  "libcorvinex0 (= ${version})" "corvinex (= ${version})")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS
  "python3-pandas, python3-jinja2, python3-matplotlib, python3-distributed")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
  ${CMAKE_CURRENT_SOURCE_DIR}/debian/python/postinst ${CMAKE_CURRENT_SOURCE_DIR}/debian/python/prerm)
set(CPACK_DEBIAN_PYTHON_DESCRIPTION "reader of the tags of TIFF, BigTIFF and EXIF files for Python
The package corvinex reads what image files hold beside their pixels:
exact values and their meaning, with numbers in arrays of NumPy, and tables
about any number of files. Damaged files are read as far as they can be, and
what is wrong with them is told.")

# What programs depend on that are linked with the libraries. Until 1.0 a minor version may break them.
math(EXPR next_minor "${PROJECT_VERSION_MINOR} + 1")
set(range "libcorvinex0 (>= ${PROJECT_VERSION}), libcorvinex0 (<< ${PROJECT_VERSION_MAJOR}.${next_minor})")
file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/shlibs @ONLY CONTENT
"libcorvinex-host @PROJECT_VERSION_MAJOR@ @range@
libcorvinex-inspect @PROJECT_VERSION_MAJOR@ @range@
")

# What Debian wants to find in the folder of documents of each package.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(documents ${CMAKE_CURRENT_BINARY_DIR}/documents)
file(CONFIGURE OUTPUT ${documents}/changelog.Debian @ONLY CONTENT "corvinex (@version@) unstable; urgency=medium

  * Version @PROJECT_VERSION@; changelog.gz beside this file tells what has changed.

 -- @CPACK_PACKAGE_CONTACT@  @date@
")
configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${documents}/changelog COPYONLY)
execute_process(COMMAND gzip --no-name --best --force --keep changelog changelog.Debian
  WORKING_DIRECTORY ${documents} COMMAND_ERROR_IS_FATAL ANY)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} name)
  install(FILES ${documents}/changelog.gz ${documents}/changelog.Debian.gz debian/copyright
    COMPONENT ${component}
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME})
endforeach()
install(FILES debian/libcorvinex0.lintian-overrides COMPONENT runtime RENAME libcorvinex0
  DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides)
# The build of the second host alone is that of these sources.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples COMPONENT dev
  DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/libcorvinex-dev
  PATTERN other-host/CMakeLists.txt EXCLUDE PATTERN python EXCLUDE)
if(CORVINEX_PYTHON)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/python/ COMPONENT python
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/python3-corvinex/examples)
endif()

include(CPack)
