#pragma once

#include <stddef.h>
#include <stdint.h>

// Filtering, line by line. A line of floats has four per pixel, in the byte order of ARGB8888.

namespace zm {

/// For each result pixel, the first of `count` source pixels and their weights. The count is even.
struct FilterTable {
    const int* first;
    const float* weights;
    int count;
};

/// Some lines of floats and their weights.
struct FilteredSum {
    /// As for single lines, longer sums are made of partial sums.
    static constexpr int kMost = 256;

    const float* line[kMost];
    float weight[kMost];
    int count;
};

/// Lines of floats that are mixed have a multiple of this number of them.
constexpr int kMixedFloats = 32;

/// The kernels over one kind of lanes.
struct FilterKernels {
    /// Widens bytes to floats. `weighted`: multiplies colours by their alpha.
    void (*widen)(float* res, const uint8_t* pixels, int width, bool weighted);

    /// The same for colours in linear light.
    void (*widenToLight)(float* res, const uint8_t* pixels, int width, bool weighted);

    /// Computes the weighted sums of pixels along a line.
    void (*filterLine)(float* res, const float* pixels, const FilterTable& table, int width);

    /// Computes the weighted sum of lines.
    void (*mixLines)(float* res, const FilteredSum& sum, ptrdiff_t floats);

    /// Rounds to bytes, clamped. `weighted`: divides colours by their alpha.
    void (*narrow)(uint8_t* res, const float* pixels, int width, bool weighted);

    /// The same for colours in linear light.
    void (*narrowFromLight)(uint8_t* res, const float* pixels, int width, bool weighted);
};

/// The kernels to use now: reads the feature word.
const FilterKernels& KernelsForFilters();

/// The kernels for processors with AVX2.
namespace avx2 {

const FilterKernels& KernelsForFilters();

}  // namespace avx2
}  // namespace zm
