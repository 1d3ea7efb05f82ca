#pragma once

/// ZM_API marks what the shared library exports. Programs that link the static library define ZMMATH_STATIC_OBJECTS
/// instead; the targets of CMake do so for them.
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

/// Marks a member function whose parameter number `format` is a printf() format and whose arguments begin at number
/// `arguments`; the object itself is number 1.
#if defined(__MINGW32__) && !defined(__clang__)
#define ZM_PRINTF(format, arguments) __attribute__((__format__(gnu_printf, format, arguments)))
#elif defined(__GNUC__)
#define ZM_PRINTF(format, arguments) __attribute__((__format__(printf, format, arguments)))
#else
#define ZM_PRINTF(format, arguments)
#endif

/// The same for scanf() formats.
#if defined(__MINGW32__) && !defined(__clang__)
#define ZM_SCANF(format, arguments) __attribute__((__format__(gnu_scanf, format, arguments)))
#elif defined(__GNUC__)
#define ZM_SCANF(format, arguments) __attribute__((__format__(scanf, format, arguments)))
#else
#define ZM_SCANF(format, arguments)
#endif
