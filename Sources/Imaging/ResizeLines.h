#pragma once

#include <stdint.h>

// Scaling, line by line. Pixels are ARGB8888; a line of floats has four per pixel.

namespace zm {

/// Fraction bits of 16-bit numbers that hold values in the range of a byte.
constexpr int kFraction = 7;

/// The source pixels that contribute to one result pixel, in one direction.
struct Taps {
    int first, count;
    int weight;  ///< index of the first of `count` weights, which add up to 1
};

/// Source pixels for enlarging a line: result pixel i lies between source pixels `left[i]` and `left[i]` + 1. The
/// weight of the second, in units of 2^-16 and neither 0 nor 2^16, is stored twice in `weights`. For result pixels
/// before `inner`, nine source pixels can be read from `left[i]` on.
struct Neighbours {
    const int* left;
    const uint16_t* weights;
    int inner;
};

/// The destination for pixels of an opaque picture, and their highest byte.
struct ResultLine {
    uint8_t* pixels;
    int width;
    uint8_t alpha;
};

/// Some source lines and their weights. Colours are premultiplied.
struct WeightedLines {
    static constexpr int kMost = 4;

    const uint8_t* line[kMost];
    float weight[kMost];
    int count;
};

/// A line of 16-bit numbers; each array has two adjacent numbers per pixel.
struct Columns {
    uint16_t *blueRed, *greenAlpha;
};

/// The source lines of an opaque picture that contribute to one result line. The sum of the inner lines is shifted to
/// use all 16 bits and then weighted; if there are more than kMost of them, it is precomputed in `sums`. The two edge
/// lines have weights of their own. Weights are in units of 2^-16; those of the edges apply to bytes times 256.
struct Band {
    static constexpr int kMost = 4;

    Columns sums;
    const uint8_t* inner[kMost];
    const uint8_t* edge[2];
    int count, shift;
    uint16_t innerWeight, edgeWeight[2];
};

/// For each result pixel, the index of its first source column and the weights of `fours` groups of four columns. A
/// group has eight weights: each pair is stored twice. Lines must be readable for `fours` * 4 columns beyond their end.
/// A sum becomes a pixel by multiplying by `scale` and adding `bias`.
struct WeightTable {
    const int* first;
    const int16_t* weights;
    int fours;
    float scale, bias;
};

/// The most floats that are added up in sequence; longer sums are made of partial sums, since the rounding errors of
/// thousands of additions would be visible.
constexpr int kMostFloats = 256;

/// The kernels over one kind of lanes: a table, so that their signatures stand in one place.
struct LineKernels {
    /// Sums `count` lines, at most Band::kMost. `add`: adds to the existing sums instead of replacing them.
    void (*addLines)(const Columns& sums, const uint8_t* const* lines, int count, int width, bool add);

    /// Computes the weighted sum of a band.
    void (*weighLines)(const Columns& res, const Band& band, int width);

    /// Reduces columns to pixels by weighted sums.
    void (*reduceColumns)(const ResultLine& res, const Columns& columns, const WeightTable& table);

    /// Sums lines. `add`: adds to the existing sums instead of replacing them.
    void (*sumLines)(float* sums, const WeightedLines& lines, int width, bool add);

    /// Reduces sums of columns to pixels, and premultiplied colours to straight ones.
    void (*reduceLine)(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int width);

    /// Interpolates along a line. Columns are the colours times 256, plus the rounding bias that mixLines() needs.
    void (*stretchLine)(const Columns& res, const uint8_t* line, const Neighbours& neighbours, int width);

    /// Interpolates between two stretched lines. `weight` is that of the lower line, in the units of Neighbours.
    void (*mixLines)(const ResultLine& res, const Columns& upper, const Columns& lower, uint16_t weight);

    /// Averages 2x2 blocks of pixels.
    void (*halveLines)(const ResultLine& res, const uint8_t* upper, const uint8_t* lower);
};

/// The kernels to use now: reads the feature word.
const LineKernels& KernelsForLines();

/// The kernels for processors with AVX2.
namespace avx2 {

const LineKernels& KernelsForLines();

}  // namespace avx2
}  // namespace zm
