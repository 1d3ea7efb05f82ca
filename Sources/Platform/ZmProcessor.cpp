#include "ZmProcessor.h"

#include "Platform/FeatureWord.h"
#include "Platform/OsClock.h"
#include "Platform/OsFault.h"
#include "Platform/OsThread.h"
#include "Platform/ProcessorIdentification.h"
#include "Platform/ProcessorState.h"

#include <cpuid.h>
#include <emmintrin.h>
#include <string.h>
#include <x86intrin.h>

namespace zm {

// Constant-initialised: initialisers of other modules may read it before detection has run.
std::atomic<uint32_t> g_FeatureWord{0};
std::atomic<bool> g_HasAvx2{false};
ProcessorState g_Processor = {"", "", ZMPROCESSOR_UNKNOWN, 0, 0, 0, 0, 0, 0, 0.0f, 0.0f, 0};

namespace {

CpuidRegisters Cpuid(uint32_t leaf)
{
    CpuidRegisters r;
    __cpuid(leaf, r.eax, r.ebx, r.ecx, r.edx);
    return r;
}

void ReadCpuid(void* argument)
{
    CpuidLeaves& leaves = *static_cast<CpuidLeaves*>(argument);
    leaves.vendor = Cpuid(0);
    leaves.signature = Cpuid(1);
    const bool amd = HasAmdVendor(leaves.vendor);
    leaves.extended0 = Cpuid(0x80000000u);
    if (amd && leaves.extended0.eax != 0) {
        leaves.extended1 = Cpuid(0x80000001u);
    }
    if (HasBrand(leaves.extended0) || (amd && NamesByBrand(leaves.extended0))) {
        for (uint32_t i = 0; i < 3; ++i) {
            leaves.brand[i] = Cpuid(0x80000002u + i);
        }
    }
}

void SpinOnAdditions()
{
    unsigned sum = 0;
    for (unsigned i = 0; i < 500000; ++i) {
        sum += i;
        asm volatile("" : "+r"(sum));  // keeps the compiler from folding the loop
    }
}

struct ClockWork {
    uint64_t (*readCycles)();
    ClockReadings readings;
};

void ReadClocks(void* argument)
{
    ClockWork& work = *static_cast<ClockWork*>(argument);
    ClockReadings& readings = work.readings;
    readings.cyclesStart = work.readCycles();  // discarded: the first reading warms up both counters
    readings.counterStart = ReadCounter();
    readings.cyclesStart = work.readCycles();
    SpinOnAdditions();
    readings.counterEnd = ReadCounter();
    readings.cyclesEnd = work.readCycles();
}

void ProbeSse(void*)
{
    asm volatile("xorps %%xmm0, %%xmm0" : : : "xmm0");
}

ClockMeasurement MeasureThisClock(uint64_t (*readCycles)())
{
    const int previous = RaiseThreadPriority();
    SleepMilliseconds(10);  // begins a fresh time slice, so that the short loop is not interrupted
    ClockWork work = {readCycles, {}};
    work.readings.counterFrequency = CounterFrequency();
    const bool measured = RunCatchingFaults(ReadClocks, &work);
    RestoreThreadPriority(previous);
    return measured ? MeasureClock(work.readings) : ClockMeasurement{0, 0.0f};
}

ProcessorIdentity IdentifyThisProcessor()
{
    CpuidLeaves leaves = {};
    if (!RunCatchingFaults(ReadCpuid, &leaves)) {
        return UnknownProcessor();
    }
    ProcessorIdentity id = IdentifyProcessor(leaves);
    if ((id.features & ZMPROCESSOR_FEATURE_SSE) != 0 && !RunCatchingFaults(ProbeSse, nullptr)) {
        id.features &= ~uint32_t(ZMPROCESSOR_FEATURE_SSE);
    }
    return id;
}

bool ThisProcessorHasAvx2()
{
    __builtin_cpu_init();  // this may run before the compiler's own initialiser
    return __builtin_cpu_supports("avx2") != 0;
}

}  // namespace

uint64_t ReadTimeStampCounter()
{
    return __rdtsc();
}

void DetectProcessor(uint64_t (*readCycles)())
{
    ProcessorState& state = g_Processor;
    const ClockMeasurement clock = MeasureThisClock(readCycles);
    state.millisecondsPerTick = MillisecondsPerTick(CounterFrequency());
    state.millisecondsPerCycle = clock.millisecondsPerCycle;
    state.estimate = clock.mhz;
    state.frequency = SnapFrequency(clock.mhz);

    const ProcessorIdentity id = IdentifyThisProcessor();
    state.type = id.type;
    state.family = id.family;
    state.model = id.model;
    state.stepping = id.stepping;
    state.cpuType = id.cpuType;
    g_FeatureWord.store(id.features, std::memory_order_relaxed);
    g_HasAvx2.store(ThisProcessorHasAvx2(), std::memory_order_relaxed);

    memcpy(state.brand, id.brand, sizeof(state.brand));
    DescribeProcessor(state.description, id.name, state.frequency, state.estimate);
    state.detected = 1;
}

}  // namespace zm

char* GetProcessorDescription()
{
    return zm::g_Processor.description;
}

const char* GetProcessorBrand()
{
    return zm::g_Processor.brand;
}

unsigned long GetProcessorFeatures()
{
    return zm::g_FeatureWord.load(std::memory_order_relaxed);
}

ProcessorsType GetProcessorType()
{
    return zm::g_Processor.type;
}

int GetProcessorFrequency()
{
    return zm::g_Processor.frequency;
}

void ModifyProcessorFeatures(unsigned long add, unsigned long remove)
{
    const uint32_t word = zm::g_FeatureWord.load(std::memory_order_relaxed);
    zm::g_FeatureWord.store((word | uint32_t(add)) & ~uint32_t(remove), std::memory_order_relaxed);
}
