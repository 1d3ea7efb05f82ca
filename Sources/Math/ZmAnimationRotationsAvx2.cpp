#include "Math/QuaternionKernels.h"

// Compiled for AVX2. Only these functions may be visible outside this file.

namespace zm {
namespace avx2 {

void SlerpMany(const StridedResults& res, const StridedSources& from)
{
    zm::SlerpMany<FourInLanes>(res, from);
}

void NlerpMany(const StridedResults& res, const StridedSources& from)
{
    zm::NlerpMany<FourInLanes>(res, from);
}

void NormalizeVectors(const StridedResults& res, const StridedSources& from)
{
    NormalizeMany<FourInLanes, 3>(res, from);
}

void NormalizeQuaternions(const StridedResults& res, const StridedSources& from)
{
    NormalizeMany<FourInLanes, 4>(res, from);
}

void ProductMany(const StridedResults& res, const StridedSources& from)
{
    zm::ProductMany<Avx2Lanes>(res, from);
}

void TransformMany(const StridedResults& res, const StridedSources& from)
{
    zm::TransformMany<Avx2Lanes>(res, from);
}

}  // namespace avx2
}  // namespace zm
