#include "Math/QuaternionKernels.h"

// Compiled for AVX2. Only these functions may be visible outside this file.

namespace zm {
namespace avx2 {

void SlerpMany(const StridedResults& res, const StridedSources<3>& from)
{
    zm::SlerpMany<FourInLanes>(res, from);
}

void NlerpMany(const StridedResults& res, const StridedSources<3>& from)
{
    zm::NlerpMany<FourInLanes>(res, from);
}

void NormalizeVectors(const StridedPair& pair)
{
    NormalizeMany<FourInLanes, 3>(pair);
}

void NormalizeQuaternions(const StridedPair& pair)
{
    NormalizeMany<FourInLanes, 4>(pair);
}

void ProductMany(const StridedResults& res, const StridedSources<2>& from)
{
    zm::ProductMany<Avx2Lanes>(res, from);
}

void TransformMany(const StridedResults& res, const StridedSources<3>& from)
{
    zm::TransformMany<Avx2Lanes>(res, from);
}

}  // namespace avx2
}  // namespace zm
