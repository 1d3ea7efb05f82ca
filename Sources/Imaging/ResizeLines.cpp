#include "Imaging/ResizeLines.h"

#include "Imaging/ResizeKernels.h"
#include "Platform/FeatureWord.h"

namespace zm {
namespace {

template <class Pixel>
void ReduceLineBy(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int width, bool opaque)
{
    ReducePixels<Pixel>(res, sums, taps, weights, 0, width, opaque);
}

template <class Words>
void StretchLineBy(int16_t* res, const uint8_t* line, const Neighbours& neighbours, int width)
{
    StretchPixels<ScalarPixelWords>(res, line, neighbours, StretchPixels<Words>(res, line, neighbours, 0, width),
                                    width);
}

}  // namespace

void SumLines(float* sums, const WeightedLines& lines, int width, bool add)
{
    DispatchWide(avx2::SumLines, SumLinesBy<SsePixelFloats, SsePixelFloats>,
                 SumLinesBy<ScalarPixelFloats, ScalarPixelFloats>, sums, lines, width, add);
}

void ReduceLine(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int width, bool opaque)
{
    DispatchWide(avx2::ReduceLine, ReduceLineBy<SsePixelFloats>, ReduceLineBy<ScalarPixelFloats>, res, sums, taps,
                 weights, width, opaque);
}

void StretchLine(int16_t* res, const uint8_t* line, const Neighbours& neighbours, int width)
{
    DispatchWide(avx2::StretchLine, StretchLineBy<SsePixelWords>, StretchLineBy<ScalarPixelWords>, res, line,
                 neighbours, width);
}

void MixLines(const ResultLine& res, const int16_t* upper, const int16_t* lower, int share)
{
    DispatchWide(avx2::MixLines, MixLinesBy<SsePixelWords>, MixLinesBy<ScalarPixelWords>, res, upper, lower, share);
}

void HalveLines(const ResultLine& res, const uint8_t* upper, const uint8_t* lower)
{
    DispatchWide(avx2::HalveLines, HalveLinesBy<SsePixelWords>, HalveLinesBy<ScalarPixelWords>, res, upper, lower);
}

}  // namespace zm
