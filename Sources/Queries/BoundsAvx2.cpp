#include "Queries/BoundsKernels.h"

// Compiled for AVX2. Only these two functions may be visible outside this file.

namespace zm {
namespace avx2 {

void BoundPoints(Bounds& bounds, const PointCloud& cloud)
{
    zm::BoundPoints<Avx2Lanes>(bounds, cloud);
}

double FindFarthest(const PointCloud& cloud, const ZmVector& centre)
{
    return zm::FindFarthest<Avx2Lanes, DoubleLanes>(cloud, centre);
}

}  // namespace avx2
}  // namespace zm
