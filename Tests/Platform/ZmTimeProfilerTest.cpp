#include "ZmTimeProfiler.h"

#include "ZmProcessor.h"

#include <gtest/gtest.h>

#include <x86intrin.h>

#include <chrono>
#include <thread>

// A profiler is held between a shorter and a longer span taken around it, so that a loaded machine cannot
// make a test fail.

namespace {

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

TEST(TimeProfilerTest, MillisecondsAreThoseOfTheSystemsClock)
{
    ZmTimeProfiler profiler;
    const Clock::time_point beforeReset = Clock::now();
    profiler.Reset();
    const Clock::time_point afterReset = Clock::now();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const Clock::time_point beforeCurrent = Clock::now();
    const double current = profiler.Current();
    const Clock::time_point afterCurrent = Clock::now();
    const double slack = 0.01 + 1e-5 * current;  // floats, and two clocks with grains of their own
    EXPECT_GE(current, Milliseconds(beforeCurrent - afterReset) - slack);
    EXPECT_LE(current, Milliseconds(afterCurrent - beforeReset) + slack);
}

TEST(TimeProfilerTest, TimeDoesNotRunBackwardsAndResetStartsAnew)
{
    ZmTimeProfiler profiler;
    profiler.Reset();
    float last = 0;
    for (int i = 0; i < 1000; ++i) {
        const float current = profiler.Current();
        EXPECT_GE(current, last);
        last = current;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    const float beforeReset = profiler.Current();
    const Clock::time_point start = Clock::now();
    profiler.Reset();
    const float afterReset = profiler.Current();
    EXPECT_GE(beforeReset, 4.9f);
    EXPECT_LE(afterReset, Milliseconds(Clock::now() - start) + 0.01);
}

TEST(TimeProfilerTest, CyclesAreThoseOfTheTimeStampCounter)
{
    ZmRDTSCProfiler profiler;
    const uint64_t beforeReset = __rdtsc();
    profiler.Reset();
    const uint64_t afterReset = __rdtsc();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const uint64_t beforeCount = __rdtsc();
    const uint32_t count = uint32_t(profiler.CurrentCycleCount());
    const float current = profiler.Current();
    const uint64_t afterCurrent = __rdtsc();
    if (afterCurrent - beforeReset > 0xFFFFFFFFu) {
        GTEST_SKIP() << "the count wrapped meanwhile";
    }
    const uint64_t reordered = 10000;  // reads of the counter may overtake each other
    EXPECT_GE(count + reordered, beforeCount - afterReset);
    EXPECT_LE(count, afterCurrent - beforeReset + reordered);
    const double cyclesPerMillisecond = GetProcessorFrequency() * 1000.0;
    if (cyclesPerMillisecond != 0) {  // snapping moves the clock by less than a fifth
        EXPECT_GE(current, double(beforeCount - afterReset) / cyclesPerMillisecond * 0.8 - 0.01);
        EXPECT_LE(current, double(afterCurrent - beforeReset) / cyclesPerMillisecond * 1.25 + 0.01);
    }
}

}  // namespace
