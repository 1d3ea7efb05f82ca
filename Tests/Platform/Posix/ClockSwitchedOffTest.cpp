#include "Platform/ProcessorState.h"
#include "ZmProcessor.h"
#include "ZmTimeProfiler.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>

#include <string>

namespace {

TEST(ClockSwitchedOffTest, DetectionGoesOnWithoutATimeStampCounter)
{
    const ProcessorsType type = GetProcessorType();
    const unsigned long features = GetProcessorFeatures();
    const std::string name = std::string(GetProcessorDescription()).substr(0, 7);
    if (prctl(PR_SET_TSC, PR_TSC_SIGSEGV, 0, 0, 0) != 0) {
        GTEST_SKIP() << "the system does not switch the counter off";
    }
    zm::DetectProcessor();
    prctl(PR_SET_TSC, PR_TSC_ENABLE, 0, 0, 0);
    const std::string description = GetProcessorDescription();
    EXPECT_EQ(GetProcessorFrequency(), 0);
    EXPECT_EQ(zm::g_Processor.estimate, 0);
    EXPECT_EQ(zm::g_Processor.detected, 1);
    EXPECT_EQ(GetProcessorType(), type);
    EXPECT_EQ(GetProcessorFeatures(), features);
    EXPECT_EQ(description.substr(0, 7), name);
    EXPECT_NE(description.find(" 0 Mhz"), std::string::npos) << description;
    ZmRDTSCProfiler profiler;
    profiler.Reset();
    EXPECT_EQ(profiler.Current(), 0);
    zm::DetectProcessor();
}

}  // namespace
