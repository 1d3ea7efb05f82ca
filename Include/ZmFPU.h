#pragma once

#include "ZmApi.h"

// The x87 control word of the calling thread. It governs `long double` arithmetic, all floating-point arithmetic of
// 32-bit programs that are not built for SSE2, and whatever a C library computes on the x87 unit. The mathematics
// of the library itself uses SSE.
//
// A program's own start-up code may set the word again after the library was loaded, as that of mingw-w64 does. Call
// ZmSetBaseFPUControlWord() if the mode matters.

/// Read (FNSTCW) and load (FLDCW) the control word.
ZM_API unsigned short ZmGetFPUControlWord();
ZM_API void ZmSetFPUControlWord(unsigned short word);

/// Sets the calling thread to the library's base mode, as loading the library does for the loading thread: 24-bit
/// precision, all exceptions masked, round to nearest. The other bits stay unchanged; nothing is loaded if the mode is
/// already set.
ZM_API void ZmSetBaseFPUControlWord();
