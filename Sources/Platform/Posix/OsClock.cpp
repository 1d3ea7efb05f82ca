#include "Platform/OsClock.h"

namespace zm {

int64_t ReadCounter()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t(now.tv_sec) * 1000000000 + now.tv_nsec;
}

int64_t CounterFrequency()
{
    return 1000000000;
}

int64_t ReadWallClock()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return int64_t(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

bool LocalTime(int64_t seconds, tm& parts)
{
    const time_t time = time_t(seconds);
    return time == seconds && localtime_r(&time, &parts) != nullptr;
}

}  // namespace zm
