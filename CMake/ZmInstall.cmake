# Installs headers, library, find_package(ZmMath CONFIG) and pkg-config files, in the components of the packages:
# Runtime, Development, Tools, Documentation.
set(ZM_PACKAGE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/ZmMath")
set(generated "${PROJECT_BINARY_DIR}/CMake")

list(TRANSFORM ZM_PUBLIC_HEADERS PREPEND "${PROJECT_SOURCE_DIR}/Include/" OUTPUT_VARIABLE headers)
install(FILES ${headers} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/ZmMath" COMPONENT Development)
install(TARGETS ZmMath ZmMathStatic ZmSameBits EXPORT ZmMathTargets
    RUNTIME COMPONENT Runtime
    LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
    ARCHIVE COMPONENT Development)
install(EXPORT ZmMathTargets NAMESPACE ZmMath:: DESTINATION "${ZM_PACKAGE_DIR}" COMPONENT Development)

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/ZmMathConfig.cmake.in"
    "${generated}/ZmMathConfig.cmake" INSTALL_DESTINATION "${ZM_PACKAGE_DIR}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${generated}/ZmMathConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${generated}/ZmMathConfig.cmake" "${generated}/ZmMathConfigVersion.cmake"
    DESTINATION "${ZM_PACKAGE_DIR}" COMPONENT Development)

# The prefix is relative to the .pc file, so the installed tree can be moved.
set(ZM_PKGCONFIG_DIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
    BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}/${ZM_PKGCONFIG_DIR}" OUTPUT_VARIABLE ZM_PREFIX_FROM_PC)
list(JOIN ZM_SAME_BITS_OPTIONS " " ZM_SAME_BITS_TEXT)
configure_file("${CMAKE_CURRENT_LIST_DIR}/zmmath.pc.in" "${generated}/zmmath.pc" @ONLY)
install(FILES "${generated}/zmmath.pc" DESTINATION "${ZM_PKGCONFIG_DIR}" COMPONENT Development)

# Pretty-printers for debuggers. gdb loads the file that is named after the library and has the same path below its own
# auto-load folder as the library has below the root.
install(DIRECTORY Debuggers/ DESTINATION "${CMAKE_INSTALL_DATADIR}/zmmath" COMPONENT Development)
if(NOT WIN32)
    install(FILES "${PROJECT_SOURCE_DIR}/Debuggers/ZmMath-gdb.py" COMPONENT Development
        DESTINATION "${CMAKE_INSTALL_DATADIR}/gdb/auto-load/usr/${CMAKE_INSTALL_LIBDIR}"
        RENAME "libZmMath.so.${PROJECT_VERSION}-gdb.py")
endif()

# What a reader of the sources has, so that the links between the pages work.
set(ZM_DOC_DIR "${CMAKE_INSTALL_DATADIR}/doc/zmmath")
install(FILES README.md LICENSE CHANGELOG.md DESTINATION "${ZM_DOC_DIR}" COMPONENT Documentation)
install(DIRECTORY Documentation Examples DESTINATION "${ZM_DOC_DIR}" COMPONENT Documentation)
