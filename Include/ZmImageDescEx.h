#pragma once

#include <stdint.h>

/// Describes an image in memory. It owns nothing: the caller owns the pixels and the colour map.
struct ZmImageDescEx {
    uint32_t Size;              ///< for the caller, usually sizeof(ZmImageDescEx); ignored by the library
    uint32_t CompressedFormat;  ///< ZM_PIXELFORMAT of a compressed or bump-map format, else 0
    int32_t Width;              ///< pixels
    int32_t Height;             ///< lines
    int32_t BytesPerLine;       ///< from one line to the next; may exceed the bytes of a line's pixels
    int32_t BitsPerPixel;       ///< 4, 8, 16, 24 or 32
    uint32_t RedMask;           ///< bits of the channel within a pixel read as a little-endian number; U of bump maps
    uint32_t GreenMask;         ///< V of bump maps
    uint32_t BlueMask;          ///< luminance of bump maps
    uint32_t AlphaMask;         ///< 0 without alpha
    uint16_t PaletteEntrySize;  ///< bytes per entry of the colour map
    uint16_t PaletteCount;      ///< entries of the colour map; non-zero marks an indexed image
    unsigned char* Palette;     ///< the colour map, or null
    unsigned char* Pixels;      ///< the first byte of the first line
};
