#pragma once

#include "XString.h"
#include "ZmImageDescEx.h"
#include "ZmImageOptions.h"

// Images have masks, in any layout and with any pitch accepted by ZmDoBlit(). All functions return 1. They return 0 and
// write nothing if a descriptor is invalid, the sizes do not fit, an option has none of its values or memory runs out.
// The images must not overlap. Any thread may call.
//
// Without options, colours are weighted by their alpha, so that transparent pixels do not bleed; fully transparent
// areas give transparent black. Intermediate values have eight bits per channel. Eight-bit channels are rounded to
// nearest, within 1/40 of their unit. The slopes of a source in a bump format are averaged as signed numbers with all
// their bits, other channels by themselves; ZM_PF_BUMP_L8V8U8 is known by its `CompressedFormat`, since its masks are
// those of a colour format.
//
// With options, results are rounded to nearest and clamped, since most filters overshoot. Channels of more than eight
// bits keep them all, except in linear light. Weights add up to 1, so that a single colour stays the same everywhere.

/// Scales the source to the size of the destination; both have 32 bits per pixel. A direction that grows is
/// interpolated linearly between pixel centres, and border pixels extend outwards. A direction that shrinks is averaged
/// over the area that each destination pixel covers. Equal sizes are copied.
ZM_API int ZmResizeImage32(const ZmImageDescEx& src, const ZmImageDescEx& dst);

/// The same with options. Equal sizes are copied by all filters except ZMFILTER_MITCHELL, which smooths. Normals need
/// red and green; without blue, their third coordinate is positive and computed. Normals that cancel out give (0, 0,
/// 1).
ZM_API int ZmResizeImage32(const ZmImageDescEx& src, const ZmImageDescEx& dst, const ZmImageOptions& options);

/// Averages the source to the next smaller level: half the size in both directions, rounded down, at least 1. For odd
/// sizes all pixels have equal weight, so that nothing shifts. A source of 1 x 1 is copied.
ZM_API int ZmGenerateMipMap(const ZmImageDescEx& src, const ZmImageDescEx& dst);

/// The same with options.
ZM_API int ZmGenerateMipMap(const ZmImageDescEx& src, const ZmImageDescEx& dst, const ZmImageOptions& options);

/// Whether ZmResizeImage32() or ZmGenerateMipMap() accepts the images and options. Return 1, or 0 with the first thing
/// wrong in `why`, as ZmCanBlit() does.
/// @{
ZM_API int ZmCanResizeImage32(const ZmImageDescEx& src, const ZmImageDescEx& dst, XString& why,
                              const ZmImageOptions& options = {});
ZM_API int ZmCanGenerateMipMap(const ZmImageDescEx& src, const ZmImageDescEx& dst, XString& why,
                               const ZmImageOptions& options = {});
/// @}
