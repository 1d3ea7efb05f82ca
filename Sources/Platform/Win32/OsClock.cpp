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

bool LocalTime(int64_t seconds, tm& parts)
{
    const __time64_t time = seconds;
    return _localtime64_s(&parts, &time) == 0;
}

}  // namespace zm
