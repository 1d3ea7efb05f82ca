#pragma once

#include "ZmProcessor.h"

#include <stdint.h>

namespace zm {

/// The result of the detection. Written once while the library is loaded and read-only afterwards. The feature word,
/// which callers may change, is separate (FeatureWord.h).
struct ProcessorState {
    char description[64];
    char brand[49];
    ProcessorsType type;
    int frequency;  ///< MHz, nominal
    int estimate;   ///< MHz, measured
    uint32_t family, model, stepping, cpuType;
    float millisecondsPerTick;
    float millisecondsPerCycle;
    int detected;
};

extern ProcessorState g_Processor;

uint64_t ReadTimeStampCounter();

/// Identifies the processor and measures its clock, which takes about 10 ms. First step of the start-up. If reading the
/// cycle counter faults, the clock is 0 MHz.
void DetectProcessor(uint64_t (*readCycles)() = ReadTimeStampCounter);

}  // namespace zm
