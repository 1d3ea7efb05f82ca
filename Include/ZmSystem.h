#pragma once

#include "ZmApi.h"

#include <stdint.h>

/// Operating systems.
enum ZM_PLATFORM {
    ZM_PLATFORM_UNKNOWN = 0,
    ZM_PLATFORM_WINDOWS = 1,
    ZM_PLATFORM_LINUX = 2
};

/// The operating system that runs.
struct ZmSystemDesc {
    ZM_PLATFORM Platform;  ///< what the library was made for
    /// Of the kernel on Linux, 6.1.27; on Windows 10.0.19045.
    uint32_t Major, Minor, Build;
    uint32_t PointerBits;  ///< of the program: 32 or 64
    char Name[128];        ///< for people: "Debian GNU/Linux 12 (bookworm)", "Windows 10.0.19045"
};

/// The platform that the library is made for.
ZM_API ZM_PLATFORM ZmGetPlatform();

/// Asks the system. What it does not tell is 0 or empty. Any thread; some 10 microseconds.
ZM_API void ZmGetSystemDesc(ZmSystemDesc& res);
