#include "ZmProcessor.h"

#include <gtest/gtest.h>

#include <stdio.h>

#include <string>

namespace {

/// Restores the feature word.
class FeatureWordGuard {
public:
    FeatureWordGuard() : m_Word(GetProcessorFeatures()) {}
    ~FeatureWordGuard() { ModifyProcessorFeatures(m_Word, ~m_Word); }
    FeatureWordGuard(const FeatureWordGuard&) = delete;
    FeatureWordGuard& operator=(const FeatureWordGuard&) = delete;

private:
    unsigned long m_Word;
};

TEST(ProcessorTest, FeaturesAreThoseOfAProcessorWithSse)
{
    EXPECT_NE(GetProcessorFeatures() & ZMPROCESSOR_FEATURE_MMX, 0u);
    EXPECT_NE(GetProcessorFeatures() & ZMPROCESSOR_FEATURE_SSE, 0u);
}

TEST(ProcessorTest, BitsAreAddedAndThenRemoved)
{
    const FeatureWordGuard guard;
    const unsigned long mmx = ZMPROCESSOR_FEATURE_MMX, sse = ZMPROCESSOR_FEATURE_SSE, word = GetProcessorFeatures();
    ModifyProcessorFeatures(0, mmx);
    EXPECT_EQ(GetProcessorFeatures(), word & ~mmx);
    ModifyProcessorFeatures(mmx, sse);
    EXPECT_EQ(GetProcessorFeatures(), word & ~sse);
    ModifyProcessorFeatures(sse | 1u << 10, sse | mmx);  // removing wins
    EXPECT_EQ(GetProcessorFeatures(), (word | 1u << 10) & ~(sse | mmx));
    ModifyProcessorFeatures(0, 0);
    EXPECT_EQ(GetProcessorFeatures(), (word | 1u << 10) & ~(sse | mmx));
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
    EXPECT_GT(description.find(clock), 0u);
}

TEST(ProcessorTest, AProcessorWithSseIsNoneOfTheOldest)
{
    EXPECT_TRUE(GetProcessorType() == ZMPROCESSOR_UNKNOWN || GetProcessorType() >= ZMPROCESSOR_K6_3DNOW);
}

}  // namespace
