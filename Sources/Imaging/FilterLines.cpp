#include "Imaging/FilterKernels.h"

#include "Platform/FeatureWord.h"

namespace zm {
namespace {

template <class Pixel>
constexpr FilterKernels kKernels = {WidenBy<Pixel, Pixel>, FilterLineBy<PixelPair<Pixel>>, MixLinesOf<Pixel>,
                                    NarrowBy<Pixel, Pixel>};

}  // namespace

const FilterKernels& KernelsForFilters()
{
    return UseAvx2() ? avx2::KernelsForFilters() : UseSse() ? kKernels<SsePixelFloats> : kKernels<ScalarPixelFloats>;
}

}  // namespace zm
