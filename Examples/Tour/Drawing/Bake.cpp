#include "Bake.h"

#include "DepthMap.h"
#include "Noise.h"
#include "View.h"

#include <cmath>

namespace {

constexpr int kMapSize = 160;
constexpr float kGoldenAngle = 2.39996323f;

// Directions spread evenly over the sphere: equal steps in height, turned by the golden angle.
ZmVector SphereDirection(int index, int count)
{
    const float y = 1 - (2 * float(index) + 1) / float(count);
    const float radius = std::sqrt(1 - y * y), angle = kGoldenAngle * float(index);
    return {radius * std::cos(angle), y, radius * std::sin(angle)};
}

// Fewer directions for large meshes: the bake must not take longer than the picture.
int DirectionCount(const Mesh& mesh)
{
    return mesh.TriangleCount() > 100000 ? 48 : 256;
}

void LookFrom(const Mesh& mesh, const ZmVector& lightDirection, DepthMap& map)
{
    const ZmMatrix view = LookAlong(lightDirection);
    ZmBbox box;
    box.TransformFrom(mesh.box, view);
    const ZmVector margin(0.02f, 0.02f, 0.02f);
    map.Begin(kMapSize, view, {box.Max + margin, box.Min - margin});
    map.Draw(mesh, ZmMatrix::Identity());
}

// Light from below is reflected by the ground; close to the feet the mesh itself shades it.
float GroundBrightness(const ZmVector& from, const ZmVector& towards)
{
    const float t = from.y / std::max(-towards.y, 0.01f);
    const ZmVector hit = from + towards * t;
    return SmoothStep(0.15f, 0.9f, std::sqrt(hit.x * hit.x + hit.z * hit.z));
}

void AddLight(Mesh& mesh, const ZmVector& towards, const DepthMap& map, std::vector<float>& totals)
{
    const float bias = 0.012f / map.DepthRange();
    for (size_t i = 0; i < mesh.vertices.size(); ++i) {
        Vertex& vertex = mesh.vertices[i];
        const float weight = Dot(vertex.normal, towards);
        if (weight <= 0) {
            continue;
        }
        totals[i] += weight;
        const ZmVector p = map.ToMap(vertex.position + vertex.normal * 0.01f);
        if (p.z - bias > map.Nearest(p.x, p.y)) {
            continue;
        }
        if (towards.y > 0) {
            vertex.sky += weight;
        } else {
            vertex.ground += weight * GroundBrightness(vertex.position, towards);
        }
    }
}

}  // namespace

void BakeAmbientLight(Mesh& mesh)
{
    std::vector<float> totals(mesh.vertices.size(), 1e-6f);
    for (Vertex& vertex : mesh.vertices) {
        vertex.sky = vertex.ground = 0;
    }

    DepthMap map;
    const int count = DirectionCount(mesh);
    for (int i = 0; i < count; ++i) {
        const ZmVector towards = SphereDirection(i, count);
        LookFrom(mesh, -towards, map);
        AddLight(mesh, towards, map, totals);
    }
    for (size_t i = 0; i < mesh.vertices.size(); ++i) {
        mesh.vertices[i].sky /= totals[i];
        mesh.vertices[i].ground /= totals[i];
    }
}
