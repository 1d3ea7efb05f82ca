#pragma once

#include "ZmImageDescEx.h"

#include <stddef.h>
#include <stdint.h>

namespace zm {

struct Channel {
    int shift, bits;  ///< no bits: the channel is missing
};

constexpr int kAlpha = 3;

/// Where the channels of a pixel with masks lie: red, green, blue, alpha.
struct PixelLayout {
    int bytes;
    Channel channel[4];
};

/// Pixels in one 32-bit number, alpha highest and blue lowest.
constexpr PixelLayout kArgb = {4, {{16, 8}, {8, 8}, {0, 8}, {24, 8}}};
/// The same without alpha.
constexpr PixelLayout kRgb = {4, {{16, 8}, {8, 8}, {0, 8}, {0, 0}}};

enum class PixelKind {
    Masked,
    Indexed,
    Compressed
};

/// A descriptor that makes sense.
struct ImageView {
    PixelKind kind;
    int width, height;
    uint8_t* pixels;
    ptrdiff_t pitch;
    int bits;            ///< per pixel; of compressed images 0
    PixelLayout layout;  ///< of masked images
    uint32_t format;     ///< of compressed images
    uint8_t* palette;    ///< of indexed images
    int entrySize, entries;

    uint8_t* Line(int y) const { return pixels + y * pitch; }
};

/// False unless the mask is one run of at most 16 bits within a pixel of so many bits; an empty one is no channel.
bool ReadMask(Channel& res, uint32_t mask, int pixelBits);

/// False when the descriptor makes no sense.
bool View(ImageView& res, const ZmImageDescEx& desc);

/// False, too, for indexed and compressed images.
bool ViewMasked(ImageView& res, const ZmImageDescEx& desc);

/// The same image with its lines in reverse order; not for compressed ones.
ImageView UpsideDown(const ImageView& image);

}  // namespace zm
