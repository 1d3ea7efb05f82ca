#include "ZmPicking.h"

#include "Platform/FeatureWord.h"
#include "Queries/MeshKernels.h"

namespace zm {
namespace {

/// Without indices, those triangles that have positions.
int TrianglesOf(const ZmMesh& mesh)
{
    if (mesh.positionCount < 1) {
        return 0;
    }
    const int whole = mesh.positionCount / 3;
    return mesh.indices || mesh.triangleCount < whole ? mesh.triangleCount : whole;
}

int RayMesh(const ZmRay& ray, const ZmMesh& mesh, float maxDistance, ZMMESH_SIDES sides, ZmMeshHit* hit)
{
    const MeshQuery query = {&ray, &mesh, TrianglesOf(mesh), maxDistance, sides, hit};
    const bool hasDirection = AxisRay(ray, AxisOf(ray)).along != 0;
    return query.triangles > 0 && hasDirection &&
           DispatchWide(avx2::FindHit, FindHit<SseLanes>, FindHit<ScalarLanes>, query);
}

}  // namespace
}  // namespace zm

int ZmRayMesh(const ZmRay& ray, const ZmMesh& mesh, float maxDistance, ZmMeshHit& hit, ZMMESH_SIDES sides)
{
    return zm::RayMesh(ray, mesh, maxDistance, sides, &hit);
}

int ZmRayMeshAny(const ZmRay& ray, const ZmMesh& mesh, float maxDistance, ZMMESH_SIDES sides)
{
    return zm::RayMesh(ray, mesh, maxDistance, sides, nullptr);
}
