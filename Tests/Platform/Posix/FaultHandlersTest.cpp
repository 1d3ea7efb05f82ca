#include "Platform/OsFault.h"

#include <gtest/gtest.h>
#include <signal.h>

namespace {

void RunUnknownInstruction(void*)
{
    asm volatile("ud2");
}

void DoNothing(void*) {}

TEST(FaultHandlersTest, TheHostsHandlersComeBackWithAndWithoutAFault)
{
    for (const auto work : {RunUnknownInstruction, DoNothing}) {
        for (const int number : {SIGSEGV, SIGILL}) {
            struct sigaction before = {}, mine = {}, after = {};
            mine.sa_handler = SIG_IGN;
            sigaction(number, &mine, &before);
            EXPECT_EQ(zm::RunCatchingFaults(work, nullptr), work == DoNothing);
            sigaction(number, &before, &after);
            EXPECT_EQ(after.sa_handler, SIG_IGN) << "signal " << number;
        }
    }
}

}  // namespace
