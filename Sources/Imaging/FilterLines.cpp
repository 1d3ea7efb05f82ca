#include "Imaging/FilterKernels.h"

#include "Platform/FeatureWord.h"

namespace zm {
namespace {

template <class Pixel>
constexpr FilterKernels kKernels = {WidenBy<Pixel, Pixel, false>,   WidenBy<Pixel, Pixel, true>,
                                    FilterLineBy<PixelPair<Pixel>>, MixLinesOf<Pixel>,
                                    NarrowBy<Pixel, Pixel, false>,  NarrowBy<Pixel, Pixel, true>};

}  // namespace

const FilterKernels& KernelsForFilters()
{
    return UseAvx2() ? avx2::KernelsForFilters() : UseSse() ? kKernels<SsePixelFloats> : kKernels<ScalarPixelFloats>;
}

}  // namespace zm
