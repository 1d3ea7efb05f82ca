# Reads the version from the public header, the only place that defines it, and configures again when it changes.
set(header "${CMAKE_CURRENT_SOURCE_DIR}/Include/ZmVersion.h")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${header}")
file(STRINGS "${header}" numbers REGEX "^#define ZMMATH_VERSION_(MAJOR|MINOR|PATCH) +[0-9]+$")
list(TRANSFORM numbers REPLACE "^.* " "")
list(JOIN numbers "." ZMMATH_VERSION)
if(NOT ZMMATH_VERSION MATCHES "^[0-9]+\\.[0-9]+\\.[0-9]+$")
    message(FATAL_ERROR "${header} does not define the three numbers of the version")
endif()
