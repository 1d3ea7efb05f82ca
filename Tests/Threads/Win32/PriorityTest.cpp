#include "Threads/Priorities.h"

#include <windows.h>

namespace {

struct AskSystem {
    int operator()() const { return GetThreadPriority(GetCurrentThread()); }
};

TEST(ZmThreadPriorityTest, ReachesTheSystem)
{
    ExpectPriorities({{0, 0}, {1, 1}, {2, -1}, {3, 2}, {4, -2}, {5, -15}, {6, 15}, {9, 0}}, AskSystem());
}

}  // namespace
