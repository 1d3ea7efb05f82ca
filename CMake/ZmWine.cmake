# Runs the programs of the Windows variants under Wine, in separate prefixes in the build folder, without a display.
# Without a Wine for the word size the tests are reported as skipped (RunWine.sh exits with 77).
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(ZM_WINE_ARCH win64)
    set(wine_names wine64 wine64-stable wine)
else()
    set(ZM_WINE_ARCH win32)
    # Debian's wine in /usr/bin is a wrapper that may support 64 bits only; the probe detects that.
    set(wine_names wine wine-stable)
endif()
find_program(ZMMATH_WINE NAMES ${wine_names}
    PATHS /usr/lib/wine /usr/lib/i386-linux-gnu/wine /opt/wine-stable/bin
    NO_CMAKE_FIND_ROOT_PATH)
if(NOT ZMMATH_WINE)
    message(STATUS "No Wine found: the tests of this variant will be skipped")
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR
    "${PROJECT_SOURCE_DIR}/CMake/RunWine.sh;${PROJECT_BINARY_DIR}/wine;${ZM_WINE_ARCH};${ZMMATH_WINE}")
