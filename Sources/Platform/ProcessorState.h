#pragma once

#include "ZmProcessor.h"

#include <stdint.h>

namespace zm {

/// What detection found out. Written once while the library is loaded, only read afterwards;
/// the feature word, which callers may change, is kept apart (FeatureWord.h).
struct ProcessorState {
    char description[64];
    char brand[49];
    ProcessorsType type;
    int frequency;  ///< MHz, snapped
    int estimate;   ///< MHz, measured
    uint32_t family, model, stepping, cpuType;
    float millisecondsPerTick;
    float millisecondsPerCycle;
    int detected;
};

extern ProcessorState g_Processor;

uint64_t ReadTimeStampCounter();

/// Identifies the processor and measures its clock, which takes some 10 ms. First step of the
/// start-up. Where reading the cycles faults, the clock counts as 0 MHz.
void DetectProcessor(uint64_t (*readCycles)() = ReadTimeStampCounter);

}  // namespace zm
