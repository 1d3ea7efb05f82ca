#pragma once

/// The version of the library these headers belong to. CMake, the package
/// files and the Windows version resource read the three numbers from here.
#define ZMMATH_VERSION_MAJOR 0
#define ZMMATH_VERSION_MINOR 4
#define ZMMATH_VERSION_PATCH 0

/// Helper macros for ZMMATH_VERSION_STRING.
#define ZMMATH_VERSION_TEXT(number) #number
#define ZMMATH_VERSION_JOIN(major, minor, patch) \
    ZMMATH_VERSION_TEXT(major) "." ZMMATH_VERSION_TEXT(minor) "." ZMMATH_VERSION_TEXT(patch)

/// "major.minor.patch"
#define ZMMATH_VERSION_STRING ZMMATH_VERSION_JOIN(ZMMATH_VERSION_MAJOR, ZMMATH_VERSION_MINOR, ZMMATH_VERSION_PATCH)
