#include "ZmProcessor.h"

#include <cpuid.h>
#include <gtest/gtest.h>
#include <stdio.h>

#include <string>

namespace {

TEST(ZmProcessorTest, BitsAreAddedAndThenRemoved)
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

TEST(ZmProcessorTest, TheBrandIsWhatTheProcessorsLeavesSpell)
{
    unsigned leaf[12] = {}, highest = 0, ignored = 0;
    __cpuid(0x80000000u, highest, ignored, ignored, ignored);
    for (unsigned i = 0; i < 3 && highest >= 0x80000004u; ++i) {
        __cpuid(0x80000002u + i, leaf[4 * i], leaf[4 * i + 1], leaf[4 * i + 2], leaf[4 * i + 3]);
    }
    const std::string spelt(reinterpret_cast<const char*>(leaf), sizeof(leaf)), brand = GetProcessorBrand();
    EXPECT_EQ(brand.empty(), spelt.find_first_not_of(std::string(" \0", 2)) == std::string::npos);
    EXPECT_NE(spelt.find(brand), std::string::npos) << brand;
}

TEST(ZmProcessorTest, TheDescriptionNamesTheClock)
{
    const std::string description = GetProcessorDescription();
    const int mhz = GetProcessorFrequency();
    char clock[64];
    if (mhz < 1000) {
        snprintf(clock, sizeof(clock), " %d Mhz", mhz);
    } else {
        snprintf(clock, sizeof(clock), " %g Ghz", mhz / 1000.0);
    }
    EXPECT_LT(description.size(), 64u);
    EXPECT_NE(description.find(clock), std::string::npos) << description << " has no" << clock;
}

}  // namespace
