#include "Imaging/PaletteKernels.h"

// Compiled for AVX2. Only these two functions may be visible outside this file.

namespace zm {
namespace avx2 {

int Learn(PaletteNetwork& network, const PackedPicture& picture, int factor)
{
    return zm::Learn<Avx2Words>(network, picture, factor);
}

void Map(const PaletteIndex& index, const uint8_t* pixels, uint8_t* res, int count)
{
    zm::Map<Avx2Words>(index, pixels, res, count);
}

}  // namespace avx2
}  // namespace zm
