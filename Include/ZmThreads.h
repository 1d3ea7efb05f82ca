#pragma once

/// Includes the headers of one family: threads, locks, timing and the system.

#include "ZmEnvironment.h"
#include "ZmModule.h"
#include "ZmMutex.h"
#include "ZmSharedLibrary.h"
#include "ZmSystem.h"
#include "ZmThread.h"
#include "ZmTimeProfiler.h"
