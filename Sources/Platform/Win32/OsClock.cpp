#include "Platform/OsClock.h"

#include <windows.h>

namespace zm {

int64_t ReadCounter()
{
    LARGE_INTEGER ticks;
    QueryPerformanceCounter(&ticks);
    return ticks.QuadPart;
}

int64_t CounterFrequency()
{
    LARGE_INTEGER perSecond;
    QueryPerformanceFrequency(&perSecond);
    return perSecond.QuadPart;
}

int64_t ReadWallClock()
{
    constexpr int64_t k1970 = 116444736000000000;  // in units of 100 ns since 1601
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return ((int64_t(now.dwHighDateTime) << 32 | now.dwLowDateTime) - k1970) / 10000;
}

bool LocalTime(int64_t seconds, tm& parts)
{
    const __time64_t time = seconds;
    return _localtime64_s(&parts, &time) == 0;
}

}  // namespace zm
