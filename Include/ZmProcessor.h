#pragma once

#include "ZmApi.h"

#include <stdint.h>

// The processor is identified and its clock measured once, when the library is loaded. The
// answers below never change afterwards, except through ModifyProcessorFeatures.

/// Processor families told apart by CPUID's family and model; newer ones count as the
/// last of their line. Value 8 was never assigned.
enum ProcessorsType : int32_t {
    ZMPROCESSOR_UNKNOWN = -1,
    ZMPROCESSOR_PENTIUM = 0,
    ZMPROCESSOR_PENTIUM_MMX = 1,
    ZMPROCESSOR_PENTIUM_PRO = 2,
    ZMPROCESSOR_K6_3DNOW = 3,
    ZMPROCESSOR_PENTIUM_II_MODEL_3 = 4,
    ZMPROCESSOR_PENTIUM_II_MODEL_5 = 5,
    ZMPROCESSOR_PENTIUM_II_MODEL_6 = 6,
    ZMPROCESSOR_PENTIUM_III = 7,
    ZMPROCESSOR_ATHLON = 9,
    ZMPROCESSOR_PENTIUM_IV = 10
};

/// Bits of the feature word that the library itself reads.
enum : uint32_t {
    ZMPROCESSOR_FEATURE_MMX = 1u << 23,  ///< vector code for images
    ZMPROCESSOR_FEATURE_SSE = 1u << 25   ///< vector code for floats
};

/// One line with the name and the clock, at most 63 characters (cut there). The text
/// belongs to the library and must not be changed.
ZM_API char* GetProcessorDescription();

/// What the processor calls itself, by its makers whoever they are, without blanks at its ends:
/// at most 48 characters; empty where it has no such text. For people to read: the description
/// above knows the processors of its day, and counts newer ones as the last of their line.
ZM_API const char* GetProcessorBrand();

/// The feature word: EDX of CPUID leaf 1, with the SSE bit cleared where the operating
/// system does not support SSE. Vector paths are chosen by it at every call.
ZM_API unsigned long GetProcessorFeatures();

/// The family found at load; ZMPROCESSOR_UNKNOWN where CPUID does not tell.
ZM_API ProcessorsType GetProcessorType();

/// Clock in MHz, snapped to a nominal value up to 1500; 0 where it cannot be measured.
ZM_API int GetProcessorFrequency();

/// Feature word = (word OR add) AND NOT remove. Takes effect at the next call of each
/// dispatching function, in all threads; computations that run meanwhile end on the path they
/// chose. Two threads that modify at once may lose one change. Setting bits that the
/// processor lacks makes the library use them all the same.
ZM_API void ModifyProcessorFeatures(unsigned long add, unsigned long remove);
