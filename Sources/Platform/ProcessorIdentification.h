#pragma once

#include "ZmProcessor.h"

#include <stdint.h>

namespace zm {

// The rules for naming a processor and rounding its clock, as functions of plain inputs, so that every processor family
// can be tested on any machine.

struct CpuidRegisters {
    uint32_t eax, ebx, ecx, edx;
};

/// The results of CPUID. Leaves that the processor lacks are zero.
struct CpuidLeaves {
    CpuidRegisters vendor;     ///< leaf 0
    CpuidRegisters signature;  ///< leaf 1
    CpuidRegisters extended0;  ///< leaf 0x80000000
    CpuidRegisters extended1;  ///< leaf 0x80000001
    CpuidRegisters brand[3];   ///< leaves 0x80000002 to 0x80000004
};

struct ProcessorIdentity {
    char name[49];   ///< the brand string, or else the display name of the type
    char brand[49];  ///< the brand string, trimmed; of any vendor
    ProcessorsType type;
    uint32_t family, model, stepping, cpuType;
    uint32_t features;
};

/// Whether this is the vendor whose extended leaves provide type and name.
bool HasAmdVendor(const CpuidRegisters& vendor);

/// Whether leaf 0x80000000 announces a brand string: HasBrand() to display it, NamesByBrand() to use it as that
/// vendor's name. The latter checks only the low four bits of the highest leaf, as the first processors with a brand
/// string reported it. @{
bool HasBrand(const CpuidRegisters& extended0);
bool NamesByBrand(const CpuidRegisters& extended0);
/// @}

ProcessorIdentity IdentifyProcessor(const CpuidLeaves& leaves);

/// The identity of a processor that has no CPUID.
ProcessorIdentity UnknownProcessor();

/// The nominal clock for a measured one, both in MHz.
int SnapFrequency(int measured);

/// Writes "name 2.6 Ghz" and its variants, cut to 63 characters.
void DescribeProcessor(char (&text)[64], const char* name, int frequency, int estimate);

struct ClockReadings {
    int64_t counterStart, counterEnd;  ///< performance counter
    int64_t counterFrequency;          ///< its ticks per second
    uint64_t cyclesStart, cyclesEnd;   ///< time-stamp counter; only the low 32 bits are used
};

struct ClockMeasurement {
    int mhz;
    float millisecondsPerCycle;
};

/// All members are zero if a counter did not advance.
ClockMeasurement MeasureClock(const ClockReadings& readings);

/// Milliseconds per tick of a performance counter.
float MillisecondsPerTick(int64_t counterFrequency);

}  // namespace zm
