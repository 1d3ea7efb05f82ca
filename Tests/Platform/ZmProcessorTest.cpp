#include "ZmProcessor.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include <string>

namespace {

TEST(ProcessorTest, BitsAreAddedAndThenRemoved)
{
    const unsigned long mmx = ZMPROCESSOR_FEATURE_MMX, sse = ZMPROCESSOR_FEATURE_SSE, word = GetProcessorFeatures();
    EXPECT_EQ(word & (mmx | sse), mmx | sse);
    ModifyProcessorFeatures(0, mmx);
    EXPECT_EQ(GetProcessorFeatures(), word & ~mmx);
    ModifyProcessorFeatures(mmx, sse);
    EXPECT_EQ(GetProcessorFeatures(), word & ~sse);
    ModifyProcessorFeatures(sse | 1u << 10, sse | mmx);  // removing wins
    EXPECT_EQ(GetProcessorFeatures(), (word | 1u << 10) & ~(sse | mmx));
    ModifyProcessorFeatures(word, ~word);
    EXPECT_EQ(GetProcessorFeatures(), word);
}

TEST(ProcessorTest, TheDescriptionNamesTheClock)
{
    const std::string description = GetProcessorDescription();
    const int mhz = GetProcessorFrequency();
    char clock[64];
    if (mhz < 1000) {
        snprintf(clock, sizeof clock, " %d Mhz", mhz);
    } else {
        snprintf(clock, sizeof clock, " %g Ghz", mhz / 1000.0);
    }
    EXPECT_LT(description.size(), 64u);
    EXPECT_NE(description.find(clock), std::string::npos) << description << " has no" << clock;
}

}  // namespace
