#pragma once

#include "ZmApi.h"

#include <stdint.h>

/// Operating systems.
enum ZM_PLATFORM {
    ZM_PLATFORM_UNKNOWN = 0,
    ZM_PLATFORM_WINDOWS = 1,
    ZM_PLATFORM_LINUX = 2
};

/// The operating system that the program runs on.
struct ZmSystemDesc {
    ZM_PLATFORM Platform;  ///< the platform the library was built for
    /// Version: of the kernel on Linux, such as 6.1.27; on Windows such as 10.0.19045.
    uint32_t Major, Minor, Build;
    uint32_t PointerBits;  ///< pointer size of the program: 32 or 64
    char Name[128];        ///< for display: "Debian GNU/Linux 12 (bookworm)", "Windows 10.0.19045"
};

/// Returns the platform that the library was built for.
ZM_API ZM_PLATFORM ZmGetPlatform();

/// Queries the system. Values that it does not report are 0 or empty. Any thread may call; takes about 10 microseconds.
ZM_API void ZmGetSystemDesc(ZmSystemDesc& res);
