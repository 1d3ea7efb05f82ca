#pragma once

#include "ZmApi.h"

// The x87 control word of the calling thread. It governs `long double` everywhere, and all
// floating-point arithmetic of 32-bit programs that are not built for SSE2; the library's own
// results do not depend on it.

/// Reads (FNSTCW) and loads (FLDCW) the control word.
ZM_API unsigned short ZmGetFPUControlWord();
ZM_API void ZmSetFPUControlWord(unsigned short word);

/// Puts the thread into the library's base mode, as loading does for the loading thread:
/// 24-bit precision, all exceptions masked, round to nearest. The other bits stay; nothing is
/// loaded when the mode is already set.
ZM_API void ZmSetBaseFPUControlWord();
