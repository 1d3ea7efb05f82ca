#include "Queries/ManyTests.h"

// Compiled for AVX2. Only these functions may be visible outside this file.

namespace zm {
namespace avx2 {

int CullBoxes(const ZmFrustum& frustum, const ManyElements& boxes)
{
    return TestMany<Avx2Lanes, BoxLanes<Avx2Lanes>>(FrustumTest<Avx2Lanes>(frustum), boxes);
}

int CullSpheres(const ZmFrustum& frustum, const ManyElements& spheres)
{
    return TestMany<Avx2Lanes, SphereLanes<Avx2Lanes>>(FrustumTest<Avx2Lanes>(frustum), spheres);
}

int RayBoxes(const ZmRay& ray, const ManyElements& boxes)
{
    return TestMany<Avx2Lanes, BoxLanes<Avx2Lanes>>(RayTest<Avx2Lanes>(ray), boxes);
}

int BoxBoxes(const ZmBbox& box, const ManyElements& boxes)
{
    return TestMany<Avx2Lanes, BoxLanes<Avx2Lanes>>(BoxTest<Avx2Lanes>(box), boxes);
}

int SphereBoxes(const ZmSphere& sphere, const ManyElements& boxes)
{
    return TestMany<Avx2Lanes, BoxLanes<Avx2Lanes>>(SphereTest<Avx2Lanes>(sphere), boxes);
}

void TransformBoxes(const StridedPair& pair, const float* m)
{
    TransformMany<Avx2Lanes>(pair, m);
}

}  // namespace avx2
}  // namespace zm
