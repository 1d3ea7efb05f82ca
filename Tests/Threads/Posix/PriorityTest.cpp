#include "Threads/Priorities.h"

#include <sys/resource.h>

namespace {

struct AskSystem {
    int operator()() const { return getpriority(PRIO_PROCESS, 0); }
};

TEST(ZmThreadPriorityTest, ReachesTheSystem)
{
    const int nice = getpriority(PRIO_PROCESS, 0);
    if (nice > 9) {
        GTEST_SKIP() << "the process is nice already";
    }
    ExpectPriorities({{0, nice}, {2, nice + 5}, {4, nice + 10}, {5, 19}, {9, nice}}, AskSystem());
    if (setpriority(PRIO_PROCESS, 0, nice - 1) == 0) {
        setpriority(PRIO_PROCESS, 0, nice);
        ExpectPriorities({{1, nice - 5}, {3, nice - 10}, {6, -20}}, AskSystem());
    }
}

}  // namespace
