#pragma once

#include "ZmVector.h"

namespace zm {

/// Points at any stride and alignment. Not empty, except where noted.
struct PointCloud {
    const unsigned char* points;
    unsigned long stride;
    int count;
};

/// The first point, the origin of all measurements: numbers stay small however far away the cloud is.
ZmVector FirstPoint(const PointCloud& cloud);

/// The covariance of the points; zero if there are none. ScaledCovarianceOf() divides it by a power of two, so that its
/// largest element is about 1: squares of tiny or huge distances then stay within the range of float.
void CovarianceOf(const PointCloud& cloud, float (&res)[3][3]);
void ScaledCovarianceOf(const PointCloud& cloud, float (&res)[3][3]);

/// The extents of the points along three axes: the three smallest and the three largest coordinates as vectors,
/// relative to the first point.
struct CloudExtents {
    ZmVector min, max;
};
CloudExtents ExtentsOf(const PointCloud& cloud, const ZmVector (&axes)[3]);

/// Sums over all points, relative to the first one: x, y, z, xx, yy, zz, xy, xz, yz.
struct CloudSums {
    double of[9];
};

/// Kernels for processors with AVX2.
namespace avx2 {

void SumUp(CloudSums& res, const PointCloud& cloud);
void FindExtents(CloudExtents& res, const PointCloud& cloud, const ZmVector* axes);

}  // namespace avx2
}  // namespace zm
