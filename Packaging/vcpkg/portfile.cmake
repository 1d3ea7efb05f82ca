# An overlay port: copy this folder into one for ports, name the repository below and pass --overlay-ports=<folder>.
vcpkg_from_git(
    OUT_SOURCE_PATH SOURCE_PATH
    URL "$ENV{ZMMATH_REPOSITORY}"
    REF "v${VERSION}"
)

vcpkg_check_features(OUT_FEATURE_OPTIONS options FEATURES tools ZMMATH_TOOLS)
vcpkg_cmake_configure(
    SOURCE_PATH "${SOURCE_PATH}"
    OPTIONS -DZMMATH_TESTS=OFF -DZMMATH_EXAMPLES=OFF ${options}
)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME ZmMath CONFIG_PATH lib/cmake/ZmMath)
vcpkg_fixup_pkgconfig()
if("tools" IN_LIST FEATURES)
    vcpkg_copy_tools(TOOL_NAMES zmarchive AUTO_CLEAN)
endif()
# The package has the shared and the static library, as targets of their own.
set(VCPKG_POLICY_MISMATCHED_NUMBER_OF_BINARIES enabled)
set(VCPKG_POLICY_DLLS_IN_STATIC_LIBRARY enabled)
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE")
