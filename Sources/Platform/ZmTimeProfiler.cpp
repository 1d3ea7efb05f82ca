#include "ZmTimeProfiler.h"

#include "Platform/OsClock.h"
#include "Platform/ProcessorState.h"

#include <x86intrin.h>

void ZmTimeProfiler::Reset()
{
    m_Start = zm::ReadCounter();
}

float ZmTimeProfiler::Current()
{
    m_Current = zm::ReadCounter();
    return float(m_Current - m_Start) * zm::g_Processor.millisecondsPerTick;
}

void ZmRDTSCProfiler::Reset()
{
    m_Start = int64_t(__rdtsc());
}

float ZmRDTSCProfiler::Current()
{
    m_Elapsed = int64_t(__rdtsc()) - m_Start;
    return float(m_Elapsed) * zm::g_Processor.millisecondsPerCycle;
}

int ZmRDTSCProfiler::CurrentCycleCount() const
{
    return int(uint32_t(__rdtsc() - uint64_t(m_Start)));
}
