// The same quantiser and filter in FreeImage.

#include "../Pictures.h"

#include <FreeImage.h>
#include <stddef.h>
#include <string.h>

namespace bench {
namespace {

FIBITMAP* Load(const Work& w)
{
    const int width = WidthOf(w), height = HeightOf(w);
    FIBITMAP* const res = FreeImage_Allocate(width, height, 24);
    for (int y = 0; y < height; ++y) {
        memcpy(FreeImage_GetScanLine(res, y), static_cast<const char*>(w.src) + ptrdiff_t(y) * width * 3,
               size_t(width) * 3);
    }
    return res;
}

void Quantize(const Work& w)
{
    static FIBITMAP* const photograph = Load(w);
    FreeImage_Unload(FreeImage_ColorQuantize(photograph, FIQ_NNQUANT));
}

/// Four bytes each; the peer treats alpha like a colour.
template <int Width, int Height>
void Lanczos(const Work& w)
{
    static FIBITMAP* const frame = [&] {
        const int width = WidthOf(w), height = HeightOf(w);
        return FreeImage_ConvertFromRawBits(static_cast<BYTE*>(const_cast<void*>(w.src)), width, height, width * 4, 32,
                                            0xFF0000, 0xFF00, 0xFF, TRUE);
    }();
    FreeImage_Unload(FreeImage_Rescale(frame, Width, Height, FILTER_LANCZOS3));
}

constexpr Entry kEntries[] = {
    {"Palette/Photograph", Quantize},
    {"Resize/Lanczos3To700x400", Lanczos<700, 400>},
    {"Resize/Lanczos3To2560x1440", Lanczos<2560, 1440>},
};

}  // namespace

extern const Contender kFreeImage;
constexpr Contender kFreeImage{"FreeImage", Role::PEER, kEntries};

}  // namespace bench
