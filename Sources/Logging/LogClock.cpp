#include "Logging/LogClock.h"

#include "Platform/OsClock.h"

#include <time.h>

namespace zm {

LogClock g_LogClock = {[] { return int64_t(time(nullptr)); }, ReadWallClock};

}  // namespace zm
