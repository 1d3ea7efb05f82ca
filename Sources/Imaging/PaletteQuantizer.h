#pragma once

#include <stdint.h>

// NeuQuant, the colour quantiser of Anthony Dekker ("Kohonen neural networks for optimal colour quantization", Network:
// Computation in Neural Systems 5, 1994): a line of 256 neurons learns the colours of a picture. Uses integer
// arithmetic only, so palettes are bit-identical on every path and platform.

namespace zm {

constexpr int kPaletteSize = 256;

/// Contiguous pixels of three bytes.
struct PackedPicture {
    const uint8_t* bytes;
    int64_t length;  ///< in bytes, a multiple of 3
};

/// The neurons during learning, one array per component.
///
/// The published algorithm also keeps a bias per neuron. It is omitted, since it always equals 1024 * (256 -
/// frequency).
struct PaletteNetwork {
    static constexpr int kColourBits = 4;  ///< fraction bits of a component: 0 to 4080

    alignas(64) uint16_t colour[3][kPaletteSize];
    /// How often a neuron has won, relative to its initial 256: 0 to 65280.
    alignas(64) uint16_t frequency[kPaletteSize];
};

struct Palette {
    uint8_t colour[kPaletteSize][3];  ///< in the byte order of the picture
};

/// Learns from one in `factor` pixels (at least 1). Writes two progress lines to the standard error stream.
void LearnPalette(Palette& res, const PackedPicture& picture, int factor);

/// A palette sorted by the second component, for a search outwards from a pixel's own value. The entries are stored
/// twice, ascending and descending, so that both directions are read upwards. They are padded with a register of
/// entries that are too far away to be found.
struct PaletteIndex {
    static constexpr int kPadding = 16;

    alignas(64) uint16_t up[3][kPaletteSize + kPadding];
    alignas(64) uint16_t down[3][kPaletteSize + kPadding];
    uint8_t entry[kPaletteSize];   ///< palette index of each entry of `up`
    uint16_t start[kPaletteSize];  ///< index in `up` at which the search for a second component begins
};

void BuildPaletteIndex(PaletteIndex& res, const Palette& palette);

/// Finds the nearest entry for each of `count` pixels, by the sum of absolute differences. Among equally near entries
/// the search takes the one it meets first; it looks one entry up, one down, and so on.
void MapToPalette(const PaletteIndex& index, const uint8_t* pixels, uint8_t* res, int count);

/// The kernels for processors with AVX2.
namespace avx2 {

int Learn(PaletteNetwork& network, const PackedPicture& picture, int factor);
void Map(const PaletteIndex& index, const uint8_t* pixels, uint8_t* res, int count);

}  // namespace avx2
}  // namespace zm
