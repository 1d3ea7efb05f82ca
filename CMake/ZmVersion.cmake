# Reads the version from the public header, the only place that defines it.
set(header "${CMAKE_CURRENT_SOURCE_DIR}/Include/ZmVersion.h")
set(ZMMATH_VERSION "")
foreach(part MAJOR MINOR PATCH)
    file(STRINGS "${header}" line REGEX "^#define ZMMATH_VERSION_${part} +[0-9]+$")
    string(REGEX MATCH "[0-9]+$" number "${line}")
    if(number STREQUAL "")
        message(FATAL_ERROR "Include/ZmVersion.h does not define ZMMATH_VERSION_${part}")
    endif()
    list(APPEND ZMMATH_VERSION ${number})
endforeach()
list(JOIN ZMMATH_VERSION "." ZMMATH_VERSION)
# Makes CMake configure again when the version changes.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${header}")
