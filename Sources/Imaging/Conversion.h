#pragma once

#include "Imaging/ImageView.h"

namespace zm {

/// How one channel is converted: ((pixel >> shift & mask) * factor + bias) >> drop, shifted left by `place`. For wide
/// channels the sum n becomes n + (n >> 16 & carry) before the shift by `drop`.
struct ChannelMove {
    int shift;
    uint32_t mask;
    int factor, bias, drop;
    int place;
    uint32_t carry;
};

/// The arithmetic that the channel moves need.
enum class Moves {
    PLACES,   ///< all factors are 1
    SCALED,   ///< fits in 16 bits
    WIDE,     ///< fits in 32 bits
    ANY,      ///< cannot be done by moves: some channel has more than eight bits, but not sixteen
    UNBIASED  ///< SCALED with no bias, for kernels that treat this case separately
};

/// The conversion from one pixel layout to another.
struct Conversion {
    PixelLayout from, to;
    ChannelMove moves[4];  ///< missing channels have a move without effect
    uint32_t constant;     ///< bits that are always set: the alpha that the source lacks
    Moves kind;
    bool copy;  ///< the bytes stay unchanged
};

Conversion Convert(const PixelLayout& from, const PixelLayout& to);

/// Converts `count` contiguous pixels.
void ConvertPixels(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count);

/// The kernel for processors with AVX2.
namespace avx2 {

void ConvertPixels(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count);

}  // namespace avx2
}  // namespace zm
