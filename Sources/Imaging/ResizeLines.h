#pragma once

#include <stdint.h>

// Scaling, line by line: pixels are ARGB8888, and a line of floats has four numbers a pixel.

namespace zm {

/// How many bits numbers of 16 bits have behind the point, where they are as large as bytes.
constexpr int kFraction = 7;

/// The pixels behind one pixel of the result, in one direction: a first one, and so many.
struct Taps {
    int first, count;
    int weight;  ///< index of the first of their weights, which add up to 1
};

/// Where lines that grow take their pixels from: number `left[i]` and the one after it, whose weight in parts of 2^16,
/// neither 0 nor all, stands twice in `weights`. Before pixel `inner` of the result, nine pixels of the line follow
/// from each number on.
struct Neighbours {
    const int* left;
    const uint16_t* weights;
    int inner;
};

/// Where pixels of an opaque picture go, and their highest byte.
struct ResultLine {
    uint8_t* pixels;
    int width;
    uint8_t alpha;
};

/// Some lines of a picture and their weights. Colours are premultiplied.
struct WeightedLines {
    static constexpr int kMost = 4;

    const uint8_t* line[kMost];
    float weight[kMost];
    int count;
};

/// A line of numbers of 16 bits, two of each pixel side by side.
struct Columns {
    uint16_t *blueRed, *greenAlpha;
};

/// The lines of an opaque picture behind one of the result. The sum of the inner ones, which stands in `sums` when they
/// are more than kMost, is shifted to use 16 bits and weighted; the two at the edges have weights of their own. Weights
/// are in parts of 2^16, those of the edges for bytes times 256.
struct Band {
    static constexpr int kMost = 4;

    Columns sums;
    const uint8_t* inner[kMost];
    const uint8_t* edge[2];
    int count, shift;
    uint16_t innerWeight, edgeWeight[2];
};

/// Where each pixel of the result begins in a line, and the weights of so many times four pixels from there on, eight
/// for four of them: twice those of two. Lines must go on for as many pixels more than they have. Sums become pixels
/// when they are scaled and the bias is added.
struct Spans {
    const int* first;
    const int16_t* weights;
    int fours;
    float scale, bias;
};

/// Sums of `count` lines, at most Band::kMost, added to what is there or instead of it.
void AddLines(const Columns& sums, const uint8_t* const* lines, int count, int width, bool add);

/// The weighted sum of a band.
void WeighLines(const Columns& res, const Band& band, int width);

/// Weighted sums of columns become pixels.
void ReduceColumns(const ResultLine& res, const Columns& columns, const Spans& spans);

/// So many floats are added up one after the other; of more the sums are, since the errors of thousands would show.
constexpr int kMostFloats = 256;

/// Sums of the lines, added to what is there or instead of it.
void SumLines(float* sums, const WeightedLines& lines, int width, bool add);

/// Sums of columns become pixels, premultiplied colours straight ones.
void ReduceLine(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int width);

/// Interpolates along a line. Columns are the colours times 256, and what MixLines() needs for rounding.
void StretchLine(const Columns& res, const uint8_t* line, const Neighbours& neighbours, int width);

/// Interpolates between two stretched lines; the weight of the lower one is as in Neighbours.
void MixLines(const ResultLine& res, const Columns& upper, const Columns& lower, uint16_t weight);

/// Means of two by two pixels.
void HalveLines(const ResultLine& res, const uint8_t* upper, const uint8_t* lower);

/// The kernels for processors with AVX2.
namespace avx2 {

void AddLines(const Columns& sums, const uint8_t* const* lines, int count, int width, bool add);
void WeighLines(const Columns& res, const Band& band, int width);
void ReduceColumns(const ResultLine& res, const Columns& columns, const Spans& spans);
void SumLines(float* sums, const WeightedLines& lines, int width, bool add);
void ReduceLine(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int width);
void StretchLine(const Columns& res, const uint8_t* line, const Neighbours& neighbours, int width);
void MixLines(const ResultLine& res, const Columns& upper, const Columns& lower, uint16_t weight);
void HalveLines(const ResultLine& res, const uint8_t* upper, const uint8_t* lower);

}  // namespace avx2
}  // namespace zm
