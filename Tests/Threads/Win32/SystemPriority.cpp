#include "Threads/SystemPriority.h"

#include <windows.h>

int SystemPriority()
{
    return GetThreadPriority(GetCurrentThread());
}
