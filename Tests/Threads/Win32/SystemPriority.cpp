#include <windows.h>

int SystemPriority();

int SystemPriority()
{
    return GetThreadPriority(GetCurrentThread());
}
