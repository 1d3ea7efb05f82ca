#include "Queries/PointCloudKernels.h"

// Compiled for AVX2. Only these two functions may be visible outside this file.

namespace zm {
namespace avx2 {

void SumUp(CloudSums& res, const PointCloud& cloud)
{
    zm::SumUp<SseLanes, DoubleLanes>(res, cloud);
}

void FindExtents(CloudExtents& res, const PointCloud& cloud, const ZmVector* axes)
{
    zm::FindExtents<Avx2Lanes>(res, cloud, axes);
}

}  // namespace avx2
}  // namespace zm
