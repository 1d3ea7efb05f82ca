#include "Threads/SystemPriority.h"

#include <sys/resource.h>

int SystemPriority()
{
    return getpriority(PRIO_PROCESS, 0);
}
