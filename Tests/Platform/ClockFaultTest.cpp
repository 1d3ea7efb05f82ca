#include "Platform/ProcessorState.h"
#include "ZmProcessor.h"
#include "ZmTimeProfiler.h"

#include <gtest/gtest.h>

#include <string>

namespace {

uint64_t FaultInsteadOfCycles()
{
    asm volatile("ud2");
    return 0;
}

TEST(ClockFaultTest, DetectionGoesOnWithoutATimeStampCounter)
{
    const ProcessorsType type = GetProcessorType();
    const unsigned long features = GetProcessorFeatures();
    const std::string name = std::string(GetProcessorDescription()).substr(0, 7);
    zm::DetectProcessor(FaultInsteadOfCycles);
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
