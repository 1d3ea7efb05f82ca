#include "Pick.h"

namespace {

ZmVector Placed(const Model& model, const ZmVector& v)
{
    ZmVector placed;
    Zm3DMultiplyMatrixVector(&placed, model.World, &v);
    return placed;
}

// The parameter along the ray is the same in world space and in model space.
void PickIn(const Model& model, const ZmRay& ray, float& nearest, PickedTriangle& picked)
{
    const Mesh& mesh = *model.Shape;
    ZmMatrix toModel = ZmMatrix::Identity();
    Zm3DInverseMatrix(toModel, model.World);
    ZmRay local;
    ray.Transform(local, toModel);
    for (size_t i = 0; i < mesh.Indices.size(); i += 3) {
        const ZmVector& a = mesh.Vertices[mesh.Indices[i]].Position;
        const ZmVector& b = mesh.Vertices[mesh.Indices[i + 1]].Position;
        const ZmVector& c = mesh.Vertices[mesh.Indices[i + 2]].Position;
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
        if (ZmIntersect::RayBox(ray, candidate.Shown->Box)) {
            PickIn(*candidate.Shown, ray, nearest, picked);
        }
    }
    picked.Distance = picked.Of ? Length(picked.Point - ray.Origin) : 0;
    return picked;
}
