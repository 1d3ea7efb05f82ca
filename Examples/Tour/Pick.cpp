#include "Pick.h"

namespace {

// The parameter along the ray is the same in world space and in model space.
bool HitsModel(const Model& model, const ZmRay& ray, float nearest, ZmMeshHit& hit)
{
    ZmMatrix toModel = ZmMatrix::Identity();
    Zm3DInverseMatrix(toModel, model.world);
    ZmRay local;
    ray.Transform(local, toModel);
    const Mesh& shape = *model.shape;
    const ZmMesh mesh = {Positions(shape), int(shape.vertices.size()), shape.indices.data(), true,
                         int(shape.TriangleCount())};
    return ZmRayMesh(local, mesh, nearest, hit) != 0;
}

PickedTriangle Picked(const Model& model, const ZmRay& ray, const ZmMeshHit& hit)
{
    const Mesh& mesh = *model.shape;
    PickedTriangle res = {&model, size_t(hit.triangle), {}, ray.Origin + ray.Direction * hit.distance, 0};
    for (size_t i = 0; i < 3; ++i) {
        const ZmVector& corner = mesh.vertices[mesh.indices[3 * res.triangle + i]].position;
        res.corners[i] = TransformPoint(corner, model.world);
    }
    res.distance = Length(res.point - ray.Origin);
    return res;
}

}  // namespace

PickedTriangle Pick(const Scene& scene, const ZmRay& ray)
{
    std::vector<uint32_t> candidates(scene.models.size());
    candidates.resize(size_t(ZmRayBoxes(ray, Boxes(scene), int(scene.models.size()), nullptr, candidates.data())));

    const Model* nearest = nullptr;
    ZmMeshHit hit = {0, 1e30f, 0, 0};
    for (const uint32_t number : candidates) {
        const Model& model = scene.models[number];
        nearest = HitsModel(model, ray, hit.distance, hit) ? &model : nearest;
    }
    return nearest ? Picked(*nearest, ray, hit) : PickedTriangle();
}
