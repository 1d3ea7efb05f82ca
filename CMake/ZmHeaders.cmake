# The public headers: ZmMath.h includes the headers of the families, and these include all of their family.
function(zm_read_includes result header)
    set(path "${PROJECT_SOURCE_DIR}/Include/${header}")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${path}")
    file(STRINGS "${path}" included REGEX "^#include \"")
    list(TRANSFORM included REPLACE "^#include \"(.+)\"$" "\\1")
    set(${result} ${included} PARENT_SCOPE)
endfunction()

zm_read_includes(families ZmMath.h)
set(ZM_CHEAP_HEADERS ZmMath.h ${families})
foreach(family IN LISTS families)
    zm_read_includes(members ${family})
    list(APPEND ZM_CHEAP_HEADERS ${members})
endforeach()
# ZmMath.h leaves these out, for they include more of the standard library.
set(ZM_PUBLIC_HEADERS ${ZM_CHEAP_HEADERS} XInterop.h ZmInterop.h ZmPrint.h)

file(GLOB unlisted RELATIVE "${PROJECT_SOURCE_DIR}/Include" "${PROJECT_SOURCE_DIR}/Include/*.h")
list(REMOVE_ITEM unlisted ${ZM_PUBLIC_HEADERS})
if(unlisted)
    message(FATAL_ERROR "No header of a family includes ${unlisted}")
endif()
