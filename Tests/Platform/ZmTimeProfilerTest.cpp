#include "ZmTimeProfiler.h"
#include "ZmProcessor.h"

#include <gtest/gtest.h>
#include <x86intrin.h>

#include <chrono>
#include <thread>

// Each measurement must lie between a shorter and a longer span taken around it, so that a loaded machine cannot make a
// test fail.

namespace {

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

TEST(ZmTimeProfilerTest, MillisecondsAreThoseOfTheSystemsClock)
{
    ZmTimeProfiler profiler;
    profiler.Reset();
    for (int round = 0; round < 3; ++round) {
        const Clock::time_point beforeReset = Clock::now();
        profiler.Reset();
        const Clock::time_point afterReset = Clock::now();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        const Clock::time_point beforeCurrent = Clock::now();
        const float current = profiler.Current(), next = profiler.Current();
        const Clock::time_point afterCurrent = Clock::now();
        const double slack = 0.01 + 1e-5 * next;  // floats, and two clocks with grains of their own
        EXPECT_GE(current, Milliseconds(beforeCurrent - afterReset) - slack);
        EXPECT_GE(next, current);
        EXPECT_LE(next, Milliseconds(afterCurrent - beforeReset) + slack);
    }
}

TEST(ZmTimeProfilerTest, CyclesAreThoseOfTheTimeStampCounter)
{
    ZmRDTSCProfiler profiler;
    const uint64_t beforeReset = __rdtsc();
    profiler.Reset();
    const uint64_t afterReset = __rdtsc();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const uint64_t beforeCount = __rdtsc();
    const uint32_t count = uint32_t(profiler.CurrentCycleCount());
    const float current = profiler.Current();
    const uint64_t least = beforeCount - afterReset, most = __rdtsc() - beforeReset;
    constexpr uint32_t kReordered = 10000;  // reads of the counter may overtake each other
    // The count wraps, so the distance from its least value is compared.
    EXPECT_LE(uint32_t(count - uint32_t(least) + kReordered), most - least + 2 * kReordered) << least << ' ' << count;
    const double cyclesPerMillisecond = GetProcessorFrequency() * 1000.0;
    if (cyclesPerMillisecond != 0 && most >> 32 == 0) {  // snapping moves the clock by less than a fifth
        EXPECT_GE(current, double(least) / cyclesPerMillisecond * 0.8 - 0.01);
        EXPECT_LE(current, double(most) / cyclesPerMillisecond * 1.25 + 0.01);
    }
}

}  // namespace
