#pragma once

#include "ZmApi.h"
#include "ZmImageDescEx.h"

#include <stdint.h>

/// Layouts of pixels. Colour formats are named from the highest bits of a pixel to the lowest, read as a little-endian
/// word: the bytes of ARGB8888 lie in memory as blue, green, red, alpha. Bump formats have their U, V and luminance
/// in the red, green and blue masks.
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

// All of these may be called from any thread. Values outside of the enumeration are allowed everywhere.

/// The format with the descriptor's bits per pixel (of which the low 16 bits count) and masks. The colour formats
/// come first, with all four masks; then the bump formats, whatever the alpha mask; then a compressed or bump
/// format in `CompressedFormat`. So a descriptor of ZM_PF_BUMP_L8V8U8 reads back as ZM_PF_32_BGR888, whose
/// masks it has. Indexed images are told by `PaletteCount`; their formats are never returned. ZM_PF_UNKNOWN when
/// nothing fits.
ZM_API ZM_PIXELFORMAT ZmImageDesc2PixelFormat(const ZmImageDescEx& desc);

/// Sets `BitsPerPixel`, the four masks and `CompressedFormat` (0 but for compressed and bump formats); nothing else.
/// Compressed formats have 0 bits and masks. ZM_PF_UNKNOWN changes nothing; a value above the enumeration sets only
/// `CompressedFormat`, to 0.
ZM_API void ZmPixelFormat2ImageDesc(ZM_PIXELFORMAT format, ZmImageDescEx& desc);

/// A name for people, such as "16 bits RGB  565". Empty for ZM_PF_UNKNOWN, for indexed formats and above.
/// The text belongs to the library.
ZM_API const char* ZmPixelFormat2String(ZM_PIXELFORMAT format);

/// Sets the masks that are usual for the descriptor's `BitsPerPixel`: RGB555 for 15 and 16 bits (on purpose not
/// RGB565), RGB888 for 24, ARGB8888 for 32. Other depths leave the masks as they are.
ZM_API void ZmBppToMask(ZmImageDescEx& desc);

/// GetBitCount() of the red, green, blue and alpha mask.
ZM_API void ZmGetBitCounts(const ZmImageDescEx& desc, unsigned long& r, unsigned long& g, unsigned long& b,
                           unsigned long& a);

/// GetBitShift() of the red, green, blue and alpha mask.
ZM_API void ZmGetBitShifts(const ZmImageDescEx& desc, unsigned long& r, unsigned long& g, unsigned long& b,
                           unsigned long& a);

/// The length of the lowest run of one bits; bits above a gap do not count. 0 for 0.
ZM_API unsigned long GetBitCount(unsigned long mask);

/// The number of zero bits below the lowest one bit; 0 for 0.
ZM_API unsigned long GetBitShift(unsigned long mask);
