#include "Queries/PointCloud.h"

#include "Platform/FeatureWord.h"
#include "Queries/PointCloudKernels.h"

#include <math.h>

namespace zm {

ZmVector FirstPoint(const PointCloud& cloud)
{
    ZmVector first;
    memcpy(&first, cloud.points, sizeof(first));
    return first;
}

namespace {

/// xx, yy, zz, xy, xz, yz.
struct Moments {
    double of[6];

    explicit Moments(const PointCloud& cloud)
    {
        CloudSums sums = {};
        double inverse = 0;
        if (cloud.count > 0) {
            inverse = 1.0 / cloud.count;
            DispatchWide(avx2::SumUp, SumUp<SseLanes, DoubleLanes>, SumUp<ScalarLanes, ScalarDoubles>, sums, cloud);
        }
        const int first[6] = {0, 1, 2, 0, 0, 1}, second[6] = {0, 1, 2, 1, 2, 2};
        for (int i = 0; i < 6; ++i) {
            of[i] = sums.of[3 + i] * inverse - (sums.of[first[i]] * inverse) * (sums.of[second[i]] * inverse);
        }
    }
    double LargestVariance() const
    {
        const double xy = of[0] > of[1] ? of[0] : of[1];
        return xy > of[2] ? xy : of[2];
    }
    void Store(float (&res)[3][3], double factor) const
    {
        constexpr int places[3][3] = {{0, 3, 4}, {3, 1, 5}, {4, 5, 2}};
        for (int i = 0; i < 9; ++i) {
            res[i / 3][i % 3] = float(of[places[i / 3][i % 3]] * factor);
        }
    }
};

}  // namespace

void CovarianceOf(const PointCloud& cloud, float (&res)[3][3])
{
    Moments(cloud).Store(res, 1);
}

void ScaledCovarianceOf(const PointCloud& cloud, float (&res)[3][3])
{
    const Moments moments(cloud);
    int exponent;
    frexp(moments.LargestVariance(), &exponent);
    moments.Store(res, ldexp(1, -exponent));
}

CloudExtents ExtentsOf(const PointCloud& cloud, const ZmVector (&axes)[3])
{
    CloudExtents res;
    DispatchWide(avx2::FindExtents, FindExtents<SseLanes>, FindExtents<ScalarLanes>, res, cloud, axes);
    return res;
}

}  // namespace zm
