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

}  // namespace zm
