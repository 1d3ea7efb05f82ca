#pragma once

#include "Imaging/ImageView.h"

namespace zm {

/// What becomes of one channel: ((pixel >> shift & mask) * factor + bias) >> drop, put at `place`.
struct ChannelMove {
    int shift;
    uint32_t mask;
    int factor, bias, drop;
    int place;
};

/// From one layout of pixels to another.
struct Conversion {
    PixelLayout from, to;
    ChannelMove moves[4];  ///< those of missing channels move nothing
    uint32_t constant;     ///< bits that are always set: an alpha that the source lacks
    bool scaled;           ///< whether any factor is other than 1
    bool wide;             ///< whether a channel has more than eight bits; then the moves are not set
    bool copy;             ///< whether the bytes stay as they are
};

Conversion Convert(const PixelLayout& from, const PixelLayout& to);

/// Converts pixels that lie side by side.
void ConvertPixels(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count);

/// The kernel for processors with AVX2.
namespace avx2 {

void ConvertPixels(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count);

}  // namespace avx2
}  // namespace zm
