#include "Pick.h"

namespace {

ZmVector Placed(const Model& model, const ZmVector& v)
{
    ZmVector placed;
    Zm3DMultiplyMatrixVector(&placed, model.world, &v);
    return placed;
}

// The parameter along the ray is the same in world space and in model space.
void PickIn(const Model& model, const ZmRay& ray, float& nearest, PickedTriangle& picked)
{
    const Mesh& mesh = *model.shape;
    ZmMatrix toModel = ZmMatrix::Identity();
    Zm3DInverseMatrix(toModel, model.world);
    ZmRay local;
    ray.Transform(local, toModel);
    for (size_t i = 0; i < mesh.indices.size(); i += 3) {
        const ZmVector& a = mesh.vertices[mesh.indices[i]].position;
        const ZmVector& b = mesh.vertices[mesh.indices[i + 1]].position;
        const ZmVector& c = mesh.vertices[mesh.indices[i + 2]].position;
        ZmVector point;
        float t;
        if (!ZmIntersect::RayFace(local, a, b, c, Cross(b - a, c - a), point, t) || t >= nearest) {
            continue;
        }
        nearest = t;
        picked = {&model, i / 3, {Placed(model, a), Placed(model, b), Placed(model, c)}, Placed(model, point), 0};
    }
}

}  // namespace

PickedTriangle Pick(const std::vector<VisibleModel>& visible, const ZmRay& ray)
{
    PickedTriangle picked;
    float nearest = 1e30f;
    for (const VisibleModel& candidate : visible) {
        if (ZmIntersect::RayBox(ray, candidate.shown->box)) {
            PickIn(*candidate.shown, ray, nearest, picked);
        }
    }
    picked.distance = picked.of ? Length(picked.point - ray.Origin) : 0;
    return picked;
}
