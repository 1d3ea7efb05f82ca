#pragma once

#include "ZmApi.h"
#include "ZmImageDescEx.h"

#include <stdint.h>

// Maps of slopes from a picture of heights. Both images have masks, in any layout and with any pitch as ZmDoBlit()
// takes them, and equal sizes. The height of a pixel is the field of it under `heightMask`, one run of at most 16 bits;
// all ones stand `scale` pixels above all zeros. A slope is half the difference between the two neighbours; the
// picture repeats itself at its edges. U runs along a line, V from line to line.
//
// Both functions return 1, or 0 with nothing written when a descriptor makes no sense, the sizes differ, the mask has
// gaps, more than 16 bits or none, or bits outside of the pixel, the scale is not a finite number, or the destination
// has no red or no green mask. The images must not overlap. Any thread.

/// The normals (-slope along U, -slope along V, 1), of unit length, in the red, green and blue fields: -1 is written as
/// all zeros and 1 as all ones, rounded to nearest. A destination's alpha gets the height.
ZM_API int ZmConvertToNormalMap(const ZmImageDescEx& src, const ZmImageDescEx& dst, uint32_t heightMask,
                                float scale = 1);

/// The slopes along U and V in the red and green fields, as signed numbers (two's complement): 1 is the largest, and
/// what is steeper is cut to it. The blue field, the luminance of bump formats, and alpha get the height.
ZM_API int ZmConvertToBumpMap(const ZmImageDescEx& src, const ZmImageDescEx& dst, uint32_t heightMask, float scale = 1);
