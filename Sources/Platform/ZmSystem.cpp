#include "ZmSystem.h"

#include "Platform/OsSystem.h"
#include "Platform/OutOfMemory.h"

#include <stdio.h>

ZM_PLATFORM ZmGetPlatform()
{
    return zm::kPlatform;
}

void ZmGetSystemDesc(ZmSystemDesc& res)
{
    const zm::SystemVersion version =
        zm::UnlessOutOfMemory(zm::SystemVersion(), [] { return zm::ReadSystemVersion(); });
    res.Platform = zm::kPlatform;
    res.Major = version.part[0];
    res.Minor = version.part[1];
    res.Build = version.part[2];
    res.PointerBits = 8 * sizeof(void*);
    snprintf(res.Name, sizeof(res.Name), "%s", version.name.c_str());
}
