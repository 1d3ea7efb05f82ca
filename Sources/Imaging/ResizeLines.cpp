#include "Imaging/ResizeLines.h"

#include "Imaging/ResizeKernels.h"
#include "Platform/FeatureWord.h"

namespace zm {
namespace {

template <class Pixel>
void ReduceLineBy(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int width)
{
    ReducePixels<Pixel>(res, sums, taps, weights, 0, width);
}

template <class Lanes>
void StretchLineBy(const Columns& res, const uint8_t* line, const Neighbours& neighbours, int width)
{
    StretchPixels<ScalarColumns>(res, line, neighbours, StretchPixels<Lanes>(res, line, neighbours, 0, width), width);
}

template <class Lanes, class Sums, class Floats, class Words>
constexpr LineKernels kKernels = {AddLinesBy<Lanes>,          WeighLinesBy<Lanes>,  ReduceColumnsBy<Sums>,
                                  SumLinesBy<Floats, Floats>, ReduceLineBy<Floats>, StretchLineBy<Lanes>,
                                  MixLinesBy<Lanes>,          HalveLinesBy<Words>};

}  // namespace

const LineKernels& KernelsForLines()
{
    return UseAvx2()  ? avx2::KernelsForLines()
           : UseSse() ? kKernels<SseColumns, SseSums, SsePixelFloats, SsePixelWords>
                      : kKernels<ScalarColumns, ScalarSums, ScalarPixelFloats, ScalarPixelWords>;
}

}  // namespace zm
