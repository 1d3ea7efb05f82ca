#include "Math/ColorKernels.h"

// Compiled for AVX2. Only these functions may be visible outside this file.

namespace zm {
namespace avx2 {

void PackColors(const StridedPair& pair)
{
    zm::PackColors<Avx2Lanes>(pair);
}

void UnpackColors(const StridedPair& pair)
{
    zm::UnpackColors<Avx2Lanes>(pair);
}

}  // namespace avx2
}  // namespace zm
