#include "ZmBestFitBBox.h"

#include "Queries/PointCloud.h"
#include "ZmEigenMatrix.h"

#include <math.h>

namespace zm {
namespace {

/// Larger boxes are taken as the result of a failed decomposition.
constexpr float kLargest = 1e6f;

/// Also false for NaN.
bool IsStable(const ZmMatrix& m)
{
    for (int i = 0; i < 12; ++i) {
        if (!(fabsf(m[i / 3][i % 3]) <= kLargest)) {
            return false;
        }
    }
    return true;
}

}  // namespace
}  // namespace zm

int ZmComputeBestFitBBox(const unsigned char* points, unsigned long stride, int count, ZmMatrix& result,
                         float additionalBorder)
{
    if (count <= 0 || !points) {
        result = ZmMatrix::Identity();
        return 0;
    }
    const zm::PointCloud cloud = {points, stride, count};
    ZmEigenMatrix eigen;
    zm::ScaledCovarianceOf(cloud, eigen.Matrix);  // scaling does not change the axes
    eigen.EigenStuff3();
    ZmVector axes[3];
    for (int i = 0; i < 3; ++i) {
        axes[i] = {eigen.Matrix[0][i], eigen.Matrix[1][i], eigen.Matrix[2][i]};
    }

    const zm::CloudExtents extents = zm::ExtentsOf(cloud, axes);
    ZmVector centre = zm::FirstPoint(cloud);
    for (int i = 0; i < 3; ++i) {
        centre += axes[i] * ((extents.min[i] + extents.max[i]) * 0.5f);
        axes[i] *= (extents.max[i] - extents.min[i]) * 0.5f + additionalBorder;
    }
    result = ZmMatrix(axes[0], axes[1], axes[2], centre);
    return zm::IsStable(result);
}
