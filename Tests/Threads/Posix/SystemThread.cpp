#include <pthread.h>
#include <string>
#include <sys/resource.h>

int SystemPriority();
std::string SystemThreadName();

int SystemPriority()
{
    return getpriority(PRIO_PROCESS, 0);
}

std::string SystemThreadName()
{
    char name[16] = "";
    pthread_getname_np(pthread_self(), name, sizeof(name));
    return name;
}
