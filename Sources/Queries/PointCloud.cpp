#include "Queries/PointCloud.h"

#include "Platform/FeatureWord.h"
#include "Queries/PointCloudKernels.h"

namespace zm {

ZmVector FirstPoint(const PointCloud& cloud)
{
    ZmVector first;
    memcpy(&first, cloud.points, sizeof first);
    return first;
}

void CovarianceOf(const PointCloud& cloud, float (&res)[3][3])
{
    CloudSums sums = {};
    double inverse = 0;
    if (cloud.count > 0) {
        inverse = 1.0 / cloud.count;
        DispatchWide(avx2::SumUp, SumUp<SseLanes, DoubleLanes>, SumUp<ScalarLanes, ScalarDoubles>, sums, cloud);
    }
    double mean[9];
    for (int i = 0; i < 9; ++i) {
        mean[i] = sums.of[i] * inverse;
    }
    for (int i = 0; i < 3; ++i) {
        res[i][i] = float(mean[3 + i] - mean[i] * mean[i]);
    }
    res[0][1] = res[1][0] = float(mean[6] - mean[0] * mean[1]);
    res[0][2] = res[2][0] = float(mean[7] - mean[0] * mean[2]);
    res[1][2] = res[2][1] = float(mean[8] - mean[1] * mean[2]);
}

CloudExtents ExtentsOf(const PointCloud& cloud, const ZmVector (&axes)[3])
{
    CloudExtents res;
    DispatchWide(avx2::FindExtents, FindExtents<SseLanes>, FindExtents<ScalarLanes>, res, cloud, axes);
    return res;
}

}  // namespace zm
