#pragma once

#include "ZmLog.h"

/// Removes the library's own listeners, which would write what a test logs into files.
inline void SilenceLog()
{
    ZmLog::GetLog().UnregisterListener("ZmMath");
    ZmLog::GetLog().UnregisterListener("OUTPUTDEBUG LISTENER");
}
