#include "Platform/OsFault.h"
#include "Platform/ProcessorState.h"
#include "ZmProcessor.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>

namespace {

void ReadCycles(void*)
{
    zm::ReadTimeStampCounter();
}

TEST(ClockSwitchedOffTest, ASystemThatSwitchesTheCounterOffLeavesNoClock)
{
    // Some virtual machines report success but leave the counter running.
    const bool switched =
        prctl(PR_SET_TSC, PR_TSC_SIGSEGV, 0, 0, 0) == 0 && !zm::RunCatchingFaults(ReadCycles, nullptr);
    if (switched) {
        zm::DetectProcessor();
    }
    prctl(PR_SET_TSC, PR_TSC_ENABLE, 0, 0, 0);
    if (!switched) {
        GTEST_SKIP() << "the system does not switch the counter off";
    }
    EXPECT_EQ(GetProcessorFrequency(), 0);
    EXPECT_EQ(zm::g_Processor.detected, 1);
    zm::DetectProcessor();
}

}  // namespace
