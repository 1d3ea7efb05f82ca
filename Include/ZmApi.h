#pragma once

/// ZM_API marks what the shared library exports. Programs that contain the
/// library's object files instead define ZMMATH_STATIC_OBJECTS.
#if defined(ZMMATH_STATIC_OBJECTS)
#define ZM_API
#elif defined(_WIN32)
#if defined(ZMMATH_BUILDING)
#define ZM_API __declspec(dllexport)
#else
#define ZM_API __declspec(dllimport)
#endif
#else
#define ZM_API __attribute__((visibility("default")))
#endif
