#pragma once

#include "ZmApi.h"
#include "ZmImageDescEx.h"

// Conversions between images of equal size. All return 1, or 0 with nothing written when
// - pixels are null, a size is not positive, the sizes differ, or a pitch is smaller than its line whichever its sign
//   (lines of compressed images are rows of blocks; a negative pitch means lines that lie upwards from `Pixels`);
// - masks overlap, have gaps or more than 16 bits, or leave the pixel; 8, 16, 24 and 32 bits per pixel have masks;
// - the destination is compressed, or indexed in a way that is not named below.
//
// Sources may also be indexed (`PaletteCount` other than 0, with 4 bits per pixel, the high ones first, or 8) and
// compressed (`CompressedFormat` from ZM_PF_DXT1 to ZM_PF_DXT5 beside masks of no other format). Entries of a colour
// map are three bytes, blue, green and red; a fourth one is not looked at, as the colour maps of bitmap files have
// zeros there. Pixels beyond the map are opaque black. DXT2 and DXT4 keep their colours premultiplied.
//
// Each channel is a whole number, U, V and luminance of bump maps too, and takes the place of the destination's
// channel in the same mask field. Wider ones repeat the bits, narrower ones are rounded to nearest. A colour
// that the source lacks is 0, an alpha is opaque; bits outside of the destination's masks become 0.
//
// Images must not overlap. Bytes between lines are neither read nor written. Any thread.

/// Copies and converts. A destination with 8 bits per pixel and exactly 256 entries in its map gets a palette made
/// for a source of 24 or 32 bits per pixel with masks, in entries of at least three bytes (blue, green, red; a fourth
/// one is 255, and others stay), and the index of the nearest entry for each pixel. That allocates three bytes a pixel,
/// writes two lines to the standard error stream and reads GetQuantizationSamplingFactor().
ZM_API int ZmDoBlit(const ZmImageDescEx& src, const ZmImageDescEx& dst);

/// The same with the lines in reverse order.
ZM_API int ZmDoBlitUpsideDown(const ZmImageDescEx& src, const ZmImageDescEx& dst);

/// Composes the source over the destination by the source's alpha, which is straight (colours are not premultiplied),
/// with eight bits a channel and rounded to nearest. Where the destination has alpha, it is composed too and weights
/// the destination's colours. A source without alpha is copied. Indexed destinations give 0.
ZM_API int ZmDoAlphaBlit(const ZmImageDescEx& src, const ZmImageDescEx& dst);
