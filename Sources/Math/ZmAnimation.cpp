#include "ZmAnimation.h"

#include "Math/AnimationKernels.h"
#include "Platform/FeatureWord.h"

void Zm3DMultiplyMatrixManyStrided(const ZmStridedData& res, const ZmStridedData& a, const ZmStridedData& b, int count)
{
    zm::DispatchWide(zm::avx2::MultiplyMany, zm::MultiplyMany<zm::SseLanes>, zm::MultiplyMany<zm::ScalarLanes>,
                     zm::PairOf(res, b, count), static_cast<const char*>(a.Ptr), ptrdiff_t(a.Stride));
}

void ZmHierarchyStrided(const ZmStridedData& world, const ZmStridedData& local, const int* parents, int count)
{
    zm::DispatchWide(zm::avx2::PlaceNodes, zm::PlaceNodes<zm::SseLanes>, zm::PlaceNodes<zm::ScalarLanes>,
                     zm::PairOf(world, local, count), parents);
}

void Zm3DInverseMatrixStrided(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    zm::DispatchAvx2(zm::avx2::InvertMany, zm::InvertMany<zm::SseLanes>, zm::PairOf(res, src, count));
}

void ZmQuaternionToMatrixStrided(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    zm::DispatchWide(zm::avx2::QuaternionsToMatrices, zm::QuaternionsToMatrices<zm::SseLanes>,
                     zm::QuaternionsToMatrices<zm::ScalarLanes>, zm::PairOf(res, src, count));
}

void ZmSkinVertices(const ZmSkin& skin, const ZmStridedData& resPositions, const ZmStridedData& positions,
                    const ZmStridedData& resNormals, const ZmStridedData& normals, int count)
{
    if (skin.paletteSize < 1) {
        return;
    }
    const zm::Vertices vertices = {zm::PairOf(resPositions, positions, count), zm::PairOf(resNormals, normals, count)};
    zm::DispatchWide(zm::avx2::Skin, zm::Skin<zm::SseLanes>, zm::Skin<zm::ScalarLanes>, skin, vertices);
}
