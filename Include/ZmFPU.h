#pragma once

#include "ZmApi.h"

// The x87 control word of the calling thread. It governs `long double` everywhere, all
// floating-point arithmetic of 32-bit programs that are not built for SSE2, and what a C library
// computes on the x87 unit. The library itself computes in SSE; only what it asks the C library for
// (arc functions of rotations, the frustum's tangent) can feel the mode, by less than a float tells.
//
// A program's own start-up code may set the word again after the library was loaded: that of
// mingw-w64 does. Call ZmSetBaseFPUControlWord() where the mode matters.

/// Reads (FNSTCW) and loads (FLDCW) the control word.
ZM_API unsigned short ZmGetFPUControlWord();
ZM_API void ZmSetFPUControlWord(unsigned short word);

/// Puts the thread into the library's base mode, as loading does for the loading thread:
/// 24-bit precision, all exceptions masked, round to nearest. The other bits stay; nothing is
/// loaded when the mode is already set.
ZM_API void ZmSetBaseFPUControlWord();
