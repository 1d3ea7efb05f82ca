#include "Queries/BoundsKernels.h"

// Compiled for AVX2. Only these two functions may be visible outside this file.

namespace zm {
namespace avx2 {

void BoundPoints(Bounds& bounds, const PointCloud& cloud)
{
    zm::BoundPoints<Avx2Lanes>(bounds, cloud);
}

void FindFarthest(double& square, const PointCloud& cloud, const ZmVector& centre)
{
    zm::FindFarthest<Avx2Lanes, DoubleLanes>(square, cloud, centre);
}

}  // namespace avx2
}  // namespace zm
