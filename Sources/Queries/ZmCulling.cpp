#include "ZmCulling.h"

#include "Math/MatrixFloats.h"
#include "Platform/FeatureWord.h"
#include "Queries/BoundsKernels.h"
#include "Queries/ManyTests.h"
#include "ZmBuilders.h"

namespace zm {
namespace {

template <class L, template <class> class Elements, template <class> class Test, class Object>
int TestAll(const Object& object, const ManyElements& many)
{
    return TestMany<L, Elements<L>>(Test<L>(object), many);
}

template <template <class> class Elements, template <class> class Test, class Object>
int DispatchTest(int (*avx2)(const Object&, const ManyElements&), const Object& object, const ZmStridedData& elements,
                 int count, uint8_t* hits, uint32_t* indices)
{
    const ManyElements many(elements, count, hits, indices);
    return DispatchWide(avx2, TestAll<SseLanes, Elements, Test, Object>, TestAll<ScalarLanes, Elements, Test, Object>,
                        object, many);
}

PointCloud CloudOf(const ZmStridedData& points, int count)
{
    return {static_cast<const unsigned char*>(points.Ptr), points.Stride, count};
}

}  // namespace
}  // namespace zm

int ZmCullBoxes(const ZmFrustum& frustum, const ZmStridedData& boxes, int count, uint8_t* hits, uint32_t* indices)
{
    return zm::DispatchTest<zm::BoxLanes, zm::FrustumTest>(zm::avx2::CullBoxes, frustum, boxes, count, hits, indices);
}

int ZmCullSpheres(const ZmFrustum& frustum, const ZmStridedData& spheres, int count, uint8_t* hits, uint32_t* indices)
{
    return zm::DispatchTest<zm::SphereLanes, zm::FrustumTest>(zm::avx2::CullSpheres, frustum, spheres, count, hits,
                                                              indices);
}

int ZmRayBoxes(const ZmRay& ray, const ZmStridedData& boxes, int count, uint8_t* hits, uint32_t* indices)
{
    return zm::DispatchTest<zm::BoxLanes, zm::RayTest>(zm::avx2::RayBoxes, ray, boxes, count, hits, indices);
}

int ZmBoxBoxes(const ZmBbox& box, const ZmStridedData& boxes, int count, uint8_t* hits, uint32_t* indices)
{
    return zm::DispatchTest<zm::BoxLanes, zm::BoxTest>(zm::avx2::BoxBoxes, box, boxes, count, hits, indices);
}

int ZmSphereBoxes(const ZmSphere& sphere, const ZmStridedData& boxes, int count, uint8_t* hits, uint32_t* indices)
{
    return zm::DispatchTest<zm::BoxLanes, zm::SphereTest>(zm::avx2::SphereBoxes, sphere, boxes, count, hits, indices);
}

void ZmTransformBoxes(const ZmStridedData& res, const ZmStridedData& boxes, const ZmMatrix& m, int count)
{
    zm::DispatchWide(zm::avx2::TransformBoxes, zm::TransformMany<zm::SseLanes>, zm::TransformMany<zm::ScalarLanes>,
                     zm::PairOf(res, boxes, count), zm::FloatsOf(m));
}

ZmBbox ZmBoxOfPoints(const ZmStridedData& points, int count)
{
    zm::Bounds b;
    zm::DispatchWide(zm::avx2::BoundPoints, zm::BoundPoints<zm::SseLanes>, zm::BoundPoints<zm::ScalarLanes>, b,
                     zm::CloudOf(points, count));
    return {{b.max[0], b.max[1], b.max[2]}, {b.min[0], b.min[1], b.min[2]}};
}

ZmSphere ZmSphereOfPoints(const ZmStridedData& points, int count)
{
    const ZmBbox box = ZmBoxOfPoints(points, count);
    if (IsEmpty(box)) {
        return {{0, 0, 0}, 0};
    }
    const ZmVector centre = zm::MiddleOf(box);
    double square = 0;
    zm::DispatchWide(zm::avx2::FindFarthest, zm::FindFarthest<zm::SseLanes, zm::DoubleLanes>,
                     zm::FindFarthest<zm::ScalarLanes, zm::ScalarDoubles>, square, zm::CloudOf(points, count), centre);
    return {centre, zm::RadiusOf(square)};
}
