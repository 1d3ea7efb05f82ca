#pragma once

#include "ZmVector.h"

namespace zm {

/// Points at any stride and alignment; not empty but where said.
struct PointCloud {
    const unsigned char* points;
    unsigned long stride;
    int count;
};

/// The first point, from which everything is measured: numbers stay small however far away the cloud is.
ZmVector FirstPoint(const PointCloud& cloud);

/// The covariance of the points; zero when there are none. The other form divides it by a power of two, so that its
/// largest element is about 1: neither the squares of tiny distances nor those of huge ones leave the range of float.
void CovarianceOf(const PointCloud& cloud, float (&res)[3][3]);
void ScaledCovarianceOf(const PointCloud& cloud, float (&res)[3][3]);

/// The range of the points along three axes, as vectors of the three smallest and the three largest coordinates,
/// measured from the first point.
struct CloudExtents {
    ZmVector min, max;
};
CloudExtents ExtentsOf(const PointCloud& cloud, const ZmVector (&axes)[3]);

/// Sums over all points, measured from the first one: x, y, z, xx, yy, zz, xy, xz, yz.
struct CloudSums {
    double of[9];
};

/// The kernels for processors with AVX2.
namespace avx2 {

void SumUp(CloudSums& res, const PointCloud& cloud);
void FindExtents(CloudExtents& res, const PointCloud& cloud, const ZmVector* axes);

}  // namespace avx2
}  // namespace zm
