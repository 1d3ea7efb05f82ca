# Packages made by cpack: on Linux one .deb per component and a .tar.gz of everything; on Windows a .zip.
set(CPACK_PACKAGE_VENDOR "The ZmMath authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "3D mathematics and system services for real-time engines")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL Runtime Development Tools Documentation)
set(CPACK_COMPONENTS_GROUPING IGNORE)

set(CPACK_GENERATOR DEB TGZ)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
endif()
set(CPACK_ARCHIVE_COMPONENT_INSTALL OFF)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The ZmMath authors <zmmath@example.org>")
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(runtime "libzmmath${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "${runtime}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzmmath-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME zmmath-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME zmmath-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(about "Vectors, matrices, queries, images, archives, configurations, a log, threads.")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "${about}\nThis package has the shared library.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "${about}\nThis package has the headers, the static library, and what CMake, pkg-config\nand debuggers need.")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "${about}\nThis package has zmarchive, which makes and reads archives.")
set(CPACK_COMPONENT_DOCUMENTATION_DESCRIPTION "${about}\nThis package has the pages and the examples.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${runtime} (= ${PROJECT_VERSION})")

# Tells other packages' tools on which package a program that links the library depends, and the package manager to
# refresh the linker's cache.
file(WRITE "${generated}/shlibs" "libZmMath ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR} ${runtime} (>= ${PROJECT_VERSION})\n")
file(WRITE "${generated}/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${generated}/shlibs;${generated}/triggers")

# Copyright and changes, which Debian wants in a folder for each package.
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/ZmDebianFiles.cmake")
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/ZmDebianTriggers.cmake")
set(CPACK_ZMMATH_SOURCE "${PROJECT_SOURCE_DIR}")

find_program(ZMMATH_SHLIBDEPS dpkg-shlibdeps)
mark_as_advanced(ZMMATH_SHLIBDEPS)
if(ZMMATH_SHLIBDEPS)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/lib")
endif()

include(CPack)
