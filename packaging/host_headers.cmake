# The headers of the host are installed below corvinex/, where their includes of one another begin
# with that folder as well. In the build tree a link lets programs write the same includes.
set(HOST_HEADERS
  module.h
  interface/array.h
  interface/export.h
  interface/message.h
  interface/platform.h
  interface/plugin.h
  interface/text.h
  loading/module.h
  messages/message_catalog.h
  messages/reports.h
  platform/unicode.h
  values/value.h)

file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/include/corvinex)
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/host ${PROJECT_BINARY_DIR}/include/corvinex/host SYMBOLIC)

set(INSTALLED_HOST_HEADERS ${CMAKE_CURRENT_BINARY_DIR}/include)
foreach(header ${HOST_HEADERS})
  set(source ${PROJECT_SOURCE_DIR}/host/${header})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})
  file(READ ${source} text)
  string(REPLACE "#include \"host/" "#include \"corvinex/host/" text "${text}")
  file(CONFIGURE OUTPUT ${INSTALLED_HOST_HEADERS}/corvinex/host/${header} CONTENT "${text}" @ONLY)
endforeach()
