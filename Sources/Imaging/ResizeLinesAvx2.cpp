#include "Imaging/ResizeKernels.h"

// Compiled for AVX2. Only the function of zm::avx2 may be visible outside this file.

namespace zm {
namespace {

void ReduceTwo(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int width)
{
    int x = 0;
    for (; x + 2 <= width; x += 2) {
        const Avx2PixelFloats both = Avx2PixelFloats::Both(Reduced<SsePixelFloats>(sums, taps[x], weights),
                                                           Reduced<SsePixelFloats>(sums, taps[x + 1], weights));
        both.Straight().ToBytes(res + ptrdiff_t(x) * 4);
    }
    ReducePixels<SsePixelFloats>(res, sums, taps, weights, x, width);
}

void StretchInner(const Columns& res, const uint8_t* line, const Neighbours& neighbours, int width)
{
    const int inner = StretchPixels<Avx2Columns>(res, line, neighbours, 0, neighbours.inner);
    const int done = StretchPixels<SseColumns>(res, line, neighbours, inner, width);
    StretchPixels<ScalarColumns>(res, line, neighbours, done, width);
}

constexpr LineKernels kKernels = {AddLinesBy<Avx2Columns>,
                                  WeighLinesBy<Avx2Columns>,
                                  ReduceColumnsBy<Avx2Sums>,
                                  SumLinesBy<Avx2PixelFloats, SsePixelFloats>,
                                  ReduceTwo,
                                  StretchInner,
                                  MixLinesBy<Avx2Columns>,
                                  HalveLinesBy<Avx2PixelWords>};

}  // namespace

namespace avx2 {

const LineKernels& KernelsForLines()
{
    return kKernels;
}

}  // namespace avx2
}  // namespace zm
