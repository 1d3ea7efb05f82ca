// The same quantiser in FreeImage.

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

constexpr Entry kEntries[] = {
    {"Palette/Photograph", Quantize},
};

}  // namespace

extern const Contender kFreeImage;
constexpr Contender kFreeImage{"FreeImage", Role::PEER, kEntries};

}  // namespace bench
