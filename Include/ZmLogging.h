#pragma once

/// Includes the headers of one family: the log and its listeners.

#include "ZmConsoleListener.h"
#include "ZmFileListener.h"
#include "ZmLog.h"
#include "ZmLogListener.h"
#include "ZmOutputDebugListener.h"
