#pragma once

#include "ZmApi.h"
#include "ZmImageDescEx.h"

// Images have masks, in any layout and with any pitch accepted by ZmDoBlit(); intermediate values have eight bits per
// channel. Both functions return 1. They return 0 and write nothing if a descriptor is invalid, the sizes do not fit or
// memory runs out. Colours are weighted by their alpha, so that transparent pixels do not bleed; fully transparent
// areas give transparent black. Eight-bit channels are rounded to nearest, within 1/40 of their unit. The images must
// not overlap. Any thread may call.

/// Scales the source to the size of the destination; both have 32 bits per pixel. A direction that grows is
/// interpolated linearly between pixel centres, and border pixels extend outwards. A direction that shrinks is averaged
/// over the area that each destination pixel covers. Equal sizes are copied.
ZM_API int ZmResizeImage32(const ZmImageDescEx& src, const ZmImageDescEx& dst);

/// Averages the source to the next smaller level: half the size in both directions, rounded down, at least 1. For odd
/// sizes all pixels have equal weight, so that nothing shifts. A source of 1 x 1 is copied.
ZM_API int ZmGenerateMipMap(const ZmImageDescEx& src, const ZmImageDescEx& dst);
