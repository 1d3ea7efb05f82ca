#include <windows.h>

int SystemPriority();
bool SystemStopsThreads();

int SystemPriority()
{
    return GetThreadPriority(GetCurrentThread());
}

bool SystemStopsThreads()
{
    return true;
}
