#pragma once

#include "ZmLog.h"

/// Removes the library's own listeners, which write into files what a test logs.
inline void SilenceLog()
{
    ZmLog::GetLog().UnregisterListener("ZmMath");
    ZmLog::GetLog().UnregisterListener("OUTPUTDEBUG LISTENER");
}
