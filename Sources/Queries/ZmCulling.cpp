#include "ZmCulling.h"

#include "Math/MatrixFloats.h"
#include "Platform/FeatureWord.h"
#include "Queries/ManyTests.h"

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
    ManyElements many = {static_cast<const char*>(elements.Ptr), ptrdiff_t(elements.Stride), count, nullptr, nullptr};
    many.hits = hits;
    many.indices = indices;
    return DispatchWide(avx2, TestAll<SseLanes, Elements, Test, Object>, TestAll<ScalarLanes, Elements, Test, Object>,
                        object, many);
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
