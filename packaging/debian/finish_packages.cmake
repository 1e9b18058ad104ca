# What cpack 3.25 cannot tell a package of libraries: that those of several architectures can be installed side
# by side, and that it has no scripts. The trigger has ldconfig run; cpack adds scripts that run it again.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  get_filename_component(name ${package} NAME)
  if(NOT name MATCHES "^libcorvinex")
    continue()
  endif()
  set(folder ${package}.content)
  file(REMOVE_RECURSE ${folder})
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${folder} COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE ${folder}/DEBIAN/postinst ${folder}/DEBIAN/postrm)
  file(READ ${folder}/DEBIAN/control control)
  string(REGEX REPLACE "(^|\n)(Architecture: [^\n]*\n)" "\\1\\2Multi-Arch: same\n" control "${control}")
  file(WRITE ${folder}/DEBIAN/control "${control}")
  execute_process(COMMAND dpkg-deb --root-owner-group -Zxz --build ${folder} ${package}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE ${folder})
endforeach()
