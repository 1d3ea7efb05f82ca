#pragma once

#include "XString.h"
#include "ZmImageDescEx.h"

#include <stdint.h>

// Slope maps from height images. Both images have masks, in any layout and with any pitch accepted by ZmDoBlit(), and
// equal sizes. The height of a pixel is its field under `heightMask`, a single run of at most 16 bits; all ones are
// `scale` pixels higher than all zeros. A slope is half the difference between the two neighbours; the image repeats at
// its edges. U runs along a line, V from line to line.
//
// Both functions return 1. They return 0 and write nothing if a descriptor is invalid, the sizes differ, the height
// mask is empty, has gaps, more than 16 bits or bits outside the pixel, the scale is not finite, or the destination has
// no red or no green mask. The images must not overlap. Any thread may call.

/// Writes the unit normals along (-slope along U, -slope along V, 1) to the red, green and blue fields: -1 becomes all
/// zeros and 1 all ones, rounded to nearest. The destination's alpha receives the height.
ZM_API int ZmConvertToNormalMap(const ZmImageDescEx& src, const ZmImageDescEx& dst, uint32_t heightMask,
                                float scale = 1);

/// Writes the slopes along U and V to the red and green fields as signed numbers (two's complement): 1 is the largest
/// value, and steeper slopes are clamped. Blue (the luminance of bump formats) and alpha receive the height.
ZM_API int ZmConvertToBumpMap(const ZmImageDescEx& src, const ZmImageDescEx& dst, uint32_t heightMask, float scale = 1);

/// Whether both functions accept the arguments. Returns 1, or 0 with the first thing wrong in `why`, as ZmCanBlit()
/// does.
ZM_API int ZmCanConvertHeights(const ZmImageDescEx& src, const ZmImageDescEx& dst, uint32_t heightMask, float scale,
                               XString& why);
