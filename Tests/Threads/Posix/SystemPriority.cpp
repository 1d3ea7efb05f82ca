#include <sys/resource.h>

int SystemPriority();

int SystemPriority()
{
    return getpriority(PRIO_PROCESS, 0);
}
