#include "ZmBestFitBBox.h"

#include "Platform/FeatureWord.h"
#include "Queries/EigenLanes.h"
#include "Queries/PointCloud.h"
#include "ZmEigenMatrix.h"

#include <math.h>
#include <string.h>

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

/// The box around a cloud along the columns of `vectors`.
ZmMatrix FitAlong(const PointCloud& cloud, const float (&vectors)[3][3], float additionalBorder)
{
    ZmVector axes[3];
    for (int i = 0; i < 3; ++i) {
        axes[i] = {vectors[0][i], vectors[1][i], vectors[2][i]};
    }
    const CloudExtents extents = ExtentsOf(cloud, axes);
    ZmVector centre = FirstPoint(cloud);
    for (int i = 0; i < 3; ++i) {
        centre += axes[i] * ((extents.min[i] + extents.max[i]) * 0.5f);
        axes[i] *= (extents.max[i] - extents.min[i]) * 0.5f + additionalBorder;
    }
    return ZmMatrix(axes[0], axes[1], axes[2], centre);
}

// --- Many clouds ----------------------------------------------------------------------

/// The scalar form of FindEigenvectors().
void FindEigenvectorsSingly(EigenBlock& block)
{
    constexpr int places[3][3] = {{0, 1, 2}, {1, 3, 4}, {2, 4, 5}};
    for (int k = 0; k < EigenBlock::kCount; ++k) {
        ZmEigenMatrix eigen;
        for (int i = 0; i < 9; ++i) {
            eigen.Matrix[i / 3][i % 3] = block.symmetric[places[i / 3][i % 3]][k];
        }
        eigen.EigenStuff3();
        for (int i = 0; i < 9; ++i) {
            block.vectors[i / 3][i % 3][k] = eigen.Matrix[i / 3][i % 3];
        }
    }
}

PointCloud CloudOf(const ZmPointCloud& cloud)
{
    return {static_cast<const unsigned char*>(cloud.points.Ptr), cloud.points.Stride,
            cloud.points.Ptr ? cloud.count : 0};
}

/// The axes of up to EigenBlock::kCount clouds; those of empty ones are any.
void FindAxes(EigenBlock& block, const ZmPointCloud* clouds, int count)
{
    memset(block.symmetric, 0, sizeof(block.symmetric));
    for (int k = 0; k < count; ++k) {
        float covariance[3][3];
        ScaledCovarianceOf(CloudOf(clouds[k]), covariance);
        const float upper[] = {covariance[0][0], covariance[0][1], covariance[0][2],
                               covariance[1][1], covariance[1][2], covariance[2][2]};
        for (int i = 0; i < 6; ++i) {
            block.symmetric[i][k] = upper[i];
        }
    }
    DispatchWide(avx2::FindEigenvectors, FindEigenvectors<SseLanes>, FindEigenvectorsSingly, block);
}

/// Box number k of a block, and whether it is one.
int Fit(ZmMatrix& box, const EigenBlock& block, const ZmPointCloud& points, int k, float additionalBorder)
{
    const PointCloud cloud = CloudOf(points);
    if (cloud.count < 1) {
        box = ZmMatrix::Identity();
        return 0;
    }
    float vectors[3][3];
    for (int i = 0; i < 9; ++i) {
        vectors[i / 3][i % 3] = block.vectors[i / 3][i % 3][k];
    }
    box = FitAlong(cloud, vectors, additionalBorder);
    return IsStable(box);
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
    result = zm::FitAlong(cloud, eigen.Matrix, additionalBorder);
    return zm::IsStable(result);
}

int ZmComputeBestFitBBoxes(const ZmStridedData& res, const ZmPointCloud* clouds, int count, float additionalBorder,
                           uint8_t* fitted)
{
    constexpr int kBlock = zm::EigenBlock::kCount;
    char* boxes = static_cast<char*>(res.Ptr);
    int found = 0;
    for (int first = 0; first < count; first += kBlock) {
        const int left = count - first < kBlock ? count - first : kBlock;
        zm::EigenBlock block;
        zm::FindAxes(block, clouds + first, left);
        for (int k = 0; k < left; ++k, boxes += res.Stride) {
            ZmMatrix box;
            const int isFitted = zm::Fit(box, block, clouds[first + k], k, additionalBorder);
            memcpy(boxes, &box, sizeof(box));
            found += isFitted;
            if (fitted) {
                fitted[first + k] = uint8_t(isFitted);
            }
        }
    }
    return found;
}
