#pragma once

#include "XString.h"
#include "ZmImageDescEx.h"

// Conversions between images of equal size. All functions return 1. They return 0 and write nothing if
// - pixels are null, a size is not positive, the sizes differ, or the magnitude of a pitch is smaller than a line (the
//   lines of compressed images are rows of blocks; with a negative pitch the lines run upwards from `Pixels`);
// - masks overlap, have gaps or more than 16 bits, or exceed the pixel (8, 16, 24 and 32 bits per pixel have masks);
// - the destination is compressed, or indexed in a way that is not described below.
//
// Sources may also be indexed (`PaletteCount` other than 0, with 8 bits per pixel or with 4, the high ones first) or
// compressed (`CompressedFormat` from ZM_PF_DXT1 to ZM_PF_DXT5, with masks of no other format). Palette entries are
// three bytes: blue, green and red. A fourth byte is ignored, since the palettes of bitmap files have zeros there.
// Pixel values beyond the palette give opaque black. Colours of DXT2 and DXT4 stay premultiplied.
//
// Each channel is an unsigned integer, including U, V and luminance of bump maps, and is converted to the destination's
// channel in the same mask field. Wider channels repeat the bits, narrower ones are rounded to nearest. A missing
// source colour counts as 0, a missing alpha as opaque. Bits outside the destination's masks become 0.
//
// Images must not overlap. Bytes between lines are neither read nor written. Any thread may call.

/// Copies and converts. A destination with 8 bits per pixel and a palette of exactly 256 entries receives a palette
/// generated for the source, which must have 24 or 32 bits per pixel with masks, and for each pixel the index of the
/// nearest entry. Palette entries must have at least three bytes (blue, green, red); a fourth byte is set to 255, and
/// further ones stay unchanged. This allocates three bytes per pixel, writes two lines to the standard error stream and
/// reads GetQuantizationSamplingFactor().
ZM_API int ZmDoBlit(const ZmImageDescEx& src, const ZmImageDescEx& dst);

/// The same with the lines in reverse order.
ZM_API int ZmDoBlitUpsideDown(const ZmImageDescEx& src, const ZmImageDescEx& dst);

/// Composes the source over the destination by the source's straight alpha (colours are not premultiplied), with eight
/// bits per channel, rounded to nearest. If the destination has alpha, it is composed as well and weights the
/// destination's colours. A source without alpha is copied. Indexed destinations give 0.
ZM_API int ZmDoAlphaBlit(const ZmImageDescEx& src, const ZmImageDescEx& dst);

/// Whether ZmDoBlit() and ZmDoBlitUpsideDown(), or ZmDoAlphaBlit(), accept the images. Return 1, or 0 with the first
/// thing wrong in `why`, such as "destination: the pitch is shorter than a line". Where they return 1 the call fails
/// only for want of memory.
/// @{
ZM_API int ZmCanBlit(const ZmImageDescEx& src, const ZmImageDescEx& dst, XString& why);
ZM_API int ZmCanAlphaBlit(const ZmImageDescEx& src, const ZmImageDescEx& dst, XString& why);
/// @}
