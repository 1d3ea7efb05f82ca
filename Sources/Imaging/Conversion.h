#pragma once

#include "Imaging/ImageView.h"

namespace zm {

/// What becomes of one channel: ((pixel >> shift & mask) * factor + bias) >> drop, put at `place`. Of wide channels
/// the sum n is n + (n >> 16 & carry) before it drops bits.
struct ChannelMove {
    int shift;
    uint32_t mask;
    int factor, bias, drop;
    int place;
    uint32_t carry;
};

/// How the channels are moved.
enum class Moves {
    Places,   ///< no factor is other than 1
    Scaled,   ///< within 16 bits
    Wide,     ///< within 32 bits
    Any,      ///< by no moves: some channel has more than eight bits and is not one of sixteen
    Unbiased  ///< Scaled without a bias, where a kernel tells them apart
};

/// From one layout of pixels to another.
struct Conversion {
    PixelLayout from, to;
    ChannelMove moves[4];  ///< those of missing channels move nothing
    uint32_t constant;     ///< bits that are always set: an alpha that the source lacks
    Moves kind;
    bool copy;  ///< whether the bytes stay as they are
};

Conversion Convert(const PixelLayout& from, const PixelLayout& to);

/// Converts pixels that lie side by side.
void ConvertPixels(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count);

/// The kernel for processors with AVX2.
namespace avx2 {

void ConvertPixels(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count);

}  // namespace avx2
}  // namespace zm
