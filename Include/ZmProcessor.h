#pragma once

#include "ZmApi.h"

#include <stdint.h>

// The processor is identified and its clock measured once, when the library is loaded. The results below never change
// afterwards, except through ModifyProcessorFeatures.

/// Processor families, distinguished by CPUID's family and model; newer processors count as the last of their line.
/// Value 8 is unused.
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

/// Bits of the feature word that the library itself uses.
enum : uint32_t {
    ZMPROCESSOR_FEATURE_MMX = 1u << 23,  ///< vector code for images
    ZMPROCESSOR_FEATURE_SSE = 1u << 25   ///< vector code for floats
};

/// Returns one line with the name and the clock, cut to 63 characters. The library owns the text, which must not be
/// changed.
ZM_API char* GetProcessorDescription();

/// Returns the brand string that the processor reports, whatever its manufacturer, without leading and trailing
/// blanks: at most 48 characters, empty if there is none. For display: unlike the description above, it also names
/// processors newer than the known families.
ZM_API const char* GetProcessorBrand();

/// Returns the feature word: EDX of CPUID leaf 1, with the SSE bit cleared if the operating system does not support
/// SSE. Every call of a function with several paths chooses its path by this word.
ZM_API unsigned long GetProcessorFeatures();

/// Returns the family found at load; ZMPROCESSOR_UNKNOWN if CPUID does not report it.
ZM_API ProcessorsType GetProcessorType();

/// Returns the clock in MHz, snapped to a nominal value up to 1500; 0 if it cannot be measured.
ZM_API int GetProcessorFrequency();

/// Sets the feature word to (word OR add) AND NOT remove. Takes effect at the next call of each dispatching function,
/// in all threads; running computations finish on the path they chose. If two threads modify it at once, one change may
/// be lost. Bits that the processor lacks are used nevertheless once set.
ZM_API void ModifyProcessorFeatures(unsigned long add, unsigned long remove);
