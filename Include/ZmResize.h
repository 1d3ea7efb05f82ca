#pragma once

#include "ZmApi.h"
#include "ZmImageDescEx.h"

// Images with masks, in any layout and with any pitch as ZmDoBlit() takes them, with eight bits a channel in between.
// Both functions return 1, or 0 with nothing written when a descriptor makes no sense, the sizes do not fit or memory
// is short. Colours are weighted by their alpha, so that those of transparent pixels do not bleed; where all
// is transparent the result is transparent black. Eight bits a channel are rounded to
// nearest, within 1/40 of their unit. The images must not overlap. Any thread.

/// Scales the source to the size of the destination; both have 32 bits per pixel. Each direction is interpolated
/// linearly between the centres of pixels where it grows (the border pixels go on outside), and averaged over the area
/// that a pixel covers where it shrinks. Equal sizes are copied.
ZM_API int ZmResizeImage32(const ZmImageDescEx& src, const ZmImageDescEx& dst);

/// Averages the source to the next smaller level: half the size, rounded down and at least 1, in both directions. Odd
/// sizes count all of their pixels with equal weight, and so nothing shifts. A source of 1 x 1 is copied.
ZM_API int ZmGenerateMipMap(const ZmImageDescEx& src, const ZmImageDescEx& dst);
