#pragma once

#include "ZmProcessor.h"

#include <stdint.h>

namespace zm {

// The rules by which a processor is named and its clock rounded, over plain inputs: every
// family can be tried on any machine.

struct CpuidRegisters {
    uint32_t eax, ebx, ecx, edx;
};

/// What CPUID answered. Leaves that the processor lacks are zero.
struct CpuidLeaves {
    CpuidRegisters vendor;     ///< leaf 0
    CpuidRegisters signature;  ///< leaf 1
    CpuidRegisters extended0;  ///< leaf 0x80000000
    CpuidRegisters extended1;  ///< leaf 0x80000001
    CpuidRegisters brand[3];   ///< leaves 0x80000002 to 0x80000004
};

struct ProcessorIdentity {
    char name[49];   ///< the brand string, else the display name of the type
    char brand[49];  ///< the brand string, trimmed; of any vendor
    ProcessorsType type;
    uint32_t family, model, stepping, cpuType;
    uint32_t features;
};

/// True for the vendor whose extended leaves give type and name.
bool HasAmdVendor(const CpuidRegisters& vendor);

/// Whether leaf 0x80000000 tells of a brand string: to be shown, and to be that vendor's name, for which only the low
/// four bits of the highest leaf are looked at, as the first processors with such a string had them.
/// @{
bool HasBrand(const CpuidRegisters& extended0);
bool NamesByBrand(const CpuidRegisters& extended0);
/// @}

ProcessorIdentity IdentifyProcessor(const CpuidLeaves& leaves);

/// The identity of a processor without CPUID.
ProcessorIdentity UnknownProcessor();

/// The nominal clock behind a measured one, both in MHz.
int SnapFrequency(int measured);

/// "name 2.6 Ghz" and its variants, cut at 63 characters.
void DescribeProcessor(char (&text)[64], const char* name, int frequency, int estimate);

struct ClockReadings {
    int64_t counterStart, counterEnd;  ///< performance counter
    int64_t counterFrequency;          ///< its ticks in a second
    uint64_t cyclesStart, cyclesEnd;   ///< time-stamp counter, of which the low 32 bits count
};

struct ClockMeasurement {
    int mhz;
    float millisecondsPerCycle;
};

/// All zero when a counter did not move.
ClockMeasurement MeasureClock(const ClockReadings& readings);

/// Milliseconds in one tick of a performance counter.
float MillisecondsPerTick(int64_t counterFrequency);

}  // namespace zm
