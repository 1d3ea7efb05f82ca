#pragma once

#include "ZmApi.h"
#include "ZmImageDescEx.h"

#include <stdint.h>

/// Pixel layouts. Colour formats are named from the highest bits of a pixel to the lowest, read as a little-endian
/// word: the bytes of ARGB8888 are stored in memory as blue, green, red, alpha. Bump formats have their U, V and
/// luminance in the red, green and blue masks.
enum ZM_PIXELFORMAT : uint32_t {
    ZM_PF_UNKNOWN = 0,
    ZM_PF_32_ARGB8888 = 1,
    ZM_PF_32_RGB888 = 2,
    ZM_PF_24_RGB888 = 3,
    ZM_PF_16_RGB565 = 4,
    ZM_PF_16_RGB555 = 5,
    ZM_PF_16_ARGB1555 = 6,
    ZM_PF_16_ARGB4444 = 7,
    ZM_PF_8_RGB332 = 8,
    ZM_PF_8_ARGB2222 = 9,
    ZM_PF_32_ABGR8888 = 10,
    ZM_PF_32_RGBA8888 = 11,
    ZM_PF_32_BGRA8888 = 12,
    ZM_PF_32_BGR888 = 13,
    ZM_PF_24_BGR888 = 14,
    ZM_PF_16_BGR565 = 15,
    ZM_PF_16_BGR555 = 16,
    ZM_PF_16_ABGR1555 = 17,
    ZM_PF_16_ABGR4444 = 18,
    ZM_PF_DXT1 = 19,
    ZM_PF_DXT2 = 20,
    ZM_PF_DXT3 = 21,
    ZM_PF_DXT4 = 22,
    ZM_PF_DXT5 = 23,
    ZM_PF_BUMP_V8U8 = 24,
    ZM_PF_BUMP_V16U16 = 25,
    ZM_PF_BUMP_L6V5U5 = 26,
    ZM_PF_BUMP_L8V8U8 = 27,
    ZM_PF_INDEXED8 = 28,
    ZM_PF_INDEXED8_B = 29,
    ZM_PF_INDEXED4 = 30,
    ZM_PF_INDEXED4_B = 31
};

// Any thread may call these functions. Values outside the enumeration are allowed everywhere.

/// Returns the format with the descriptor's bits per pixel (only the low 16 bits count) and masks. Colour formats are
/// tried first and must match all four masks; then bump formats, whose alpha mask is ignored; then a compressed or bump
/// format in `CompressedFormat`. A descriptor of ZM_PF_BUMP_L8V8U8 therefore gives ZM_PF_32_BGR888, whose masks it has.
/// Indexed formats are never returned: `PaletteCount` identifies indexed images. Returns ZM_PF_UNKNOWN if nothing
/// matches.
ZM_API ZM_PIXELFORMAT ZmImageDesc2PixelFormat(const ZmImageDescEx& desc);

/// Sets `BitsPerPixel`, the four masks and `CompressedFormat` (0 except for compressed and bump formats), nothing else.
/// Compressed formats have 0 bits and masks of 0. ZM_PF_UNKNOWN changes nothing; a value above the enumeration only
/// sets `CompressedFormat` to 0.
ZM_API void ZmPixelFormat2ImageDesc(ZM_PIXELFORMAT format, ZmImageDescEx& desc);

/// Returns a readable name such as "16 bits RGB  565". Empty for ZM_PF_UNKNOWN, for indexed formats and for values
/// above the enumeration. The library owns the text.
ZM_API const char* ZmPixelFormat2String(ZM_PIXELFORMAT format);

/// Sets the usual masks for the descriptor's `BitsPerPixel`: RGB555 for 15 and 16 bits (deliberately not RGB565),
/// RGB888 for 24, ARGB8888 for 32. Other depths leave the masks unchanged.
ZM_API void ZmBppToMask(ZmImageDescEx& desc);

/// Calls GetBitCount() on the red, green, blue and alpha mask.
ZM_API void ZmGetBitCounts(const ZmImageDescEx& desc, unsigned long& r, unsigned long& g, unsigned long& b,
                           unsigned long& a);

/// Calls GetBitShift() on the red, green, blue and alpha mask.
ZM_API void ZmGetBitShifts(const ZmImageDescEx& desc, unsigned long& r, unsigned long& g, unsigned long& b,
                           unsigned long& a);

/// Returns the length of the lowest run of one bits; bits above a gap do not count. 0 for a mask of 0.
ZM_API unsigned long GetBitCount(unsigned long mask);

/// Returns the number of zero bits below the lowest one bit; 0 for a mask of 0.
ZM_API unsigned long GetBitShift(unsigned long mask);
