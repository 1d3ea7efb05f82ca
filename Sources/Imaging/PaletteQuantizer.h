#pragma once

#include <stdint.h>

// NeuQuant, the colour quantiser of Anthony Dekker ("Kohonen neural networks for optimal colour quantization",
// Network: Computation in Neural Systems 5, 1994): a line of 256 neurons learns the colours of a picture. All
// arithmetic is on whole numbers, so palettes are the same bits on every path and platform.

namespace zm {

constexpr int kPaletteSize = 256;

/// Packed pixels of three bytes.
struct PackedPicture {
    const uint8_t* bytes;
    int64_t length;  ///< in bytes, a multiple of 3
};

/// The neurons while they learn, an array for each component.
///
/// The published algorithm also keeps a bias for each neuron; it is always 1024 * (256 - frequency) and left out.
struct PaletteNetwork {
    static constexpr int kColourBits = 4;  ///< of fraction in a component: 0 to 4080

    alignas(64) uint16_t colour[3][kPaletteSize];
    /// How often a neuron was best, less its 256 at the beginning: 0 to 65280.
    alignas(64) uint16_t frequency[kPaletteSize];
};

struct Palette {
    uint8_t colour[kPaletteSize][3];  ///< in the byte order of the picture
};

/// Learns from one in `factor` pixels (at least 1). Writes two lines about its progress to the standard error stream.
void LearnPalette(Palette& res, const PackedPicture& picture, int factor);

/// A palette ordered by the second component, for the search outwards from a pixel's own value. The entries stand
/// twice, from the smallest and from the largest on, so that both directions are read upwards; behind them is room
/// for a register of entries that are too far away to be found.
struct PaletteIndex {
    static constexpr int kPadding = 16;

    alignas(64) uint16_t up[3][kPaletteSize + kPadding];
    alignas(64) uint16_t down[3][kPaletteSize + kPadding];
    uint8_t entry[kPaletteSize];   ///< number in the palette of each entry of `up`
    uint16_t start[kPaletteSize];  ///< where in `up` the search for a second component begins
};

void BuildPaletteIndex(PaletteIndex& res, const Palette& palette);

/// The nearest entry for each of `count` pixels, by the sum of absolute differences. Of several that are equally near
/// the one that the search meets first, which looks one entry up, one down, and so on.
void MapToPalette(const PaletteIndex& index, const uint8_t* pixels, uint8_t* res, int count);

/// The kernels for processors with AVX2.
namespace avx2 {

int Learn(PaletteNetwork& network, const PackedPicture& picture, int factor);
void Map(const PaletteIndex& index, const uint8_t* pixels, uint8_t* res, int count);

}  // namespace avx2
}  // namespace zm
