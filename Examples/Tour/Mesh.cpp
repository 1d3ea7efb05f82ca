#include "Mesh.h"

#include <algorithm>
#include <cmath>

namespace {

bool FitToUnitSize(Mesh& mesh)
{
    ComputeBox(mesh);
    const ZmBbox box = mesh.box;
    const ZmVector size = box.Max - box.Min;
    const float largest = std::max({size.x, size.y, size.z});
    if (!(largest > 1e-30f && largest < 1e30f)) {
        return false;
    }
    const ZmVector foot(0.5f * (box.Min.x + box.Max.x), box.Min.y, 0.5f * (box.Min.z + box.Max.z));
    for (Vertex& vertex : mesh.vertices) {
        vertex.position = (vertex.position - foot) * (1.0f / largest);
    }
    return true;
}

uint64_t Edge(uint32_t from, uint32_t to)
{
    return uint64_t(from) << 32 | to;
}

// A mesh is closed if each directed edge appears once and so does its opposite.
bool IsClosed(const Mesh& mesh)
{
    std::vector<uint64_t> edges;
    edges.reserve(mesh.indices.size());
    for (size_t i = 0; i < mesh.indices.size(); i += 3) {
        for (size_t k = 0; k < 3; ++k) {
            edges.push_back(Edge(mesh.indices[i + k], mesh.indices[i + (k + 1) % 3]));
        }
    }
    std::sort(edges.begin(), edges.end());
    if (std::adjacent_find(edges.begin(), edges.end()) != edges.end()) {
        return false;
    }
    return std::all_of(edges.begin(), edges.end(), [&](uint64_t edge) {
        return std::binary_search(edges.begin(), edges.end(), Edge(uint32_t(edge), uint32_t(edge >> 32)));
    });
}

float SignedVolume(const Mesh& mesh)
{
    float volume = 0;
    for (size_t i = 0; i < mesh.indices.size(); i += 3) {
        const ZmVector& a = mesh.vertices[mesh.indices[i]].position;
        const ZmVector& b = mesh.vertices[mesh.indices[i + 1]].position;
        const ZmVector& c = mesh.vertices[mesh.indices[i + 2]].position;
        volume += Dot(a, Cross(b, c)) / 6;
    }
    return volume;
}

void TurnInsideOut(Mesh& mesh)
{
    for (size_t i = 0; i < mesh.indices.size(); i += 3) {
        std::swap(mesh.indices[i + 1], mesh.indices[i + 2]);
    }
}

// The length of the cross product is proportional to the area, so the sum is weighted by area.
void ComputeNormals(Mesh& mesh)
{
    for (Vertex& vertex : mesh.vertices) {
        vertex.normal = ZmVector::axis0();
    }
    for (size_t i = 0; i < mesh.indices.size(); i += 3) {
        Vertex* corner[3];
        for (size_t k = 0; k < 3; ++k) {
            corner[k] = &mesh.vertices[mesh.indices[i + k]];
        }
        const ZmVector normal =
            Cross(corner[1]->position - corner[0]->position, corner[2]->position - corner[0]->position);
        for (Vertex* vertex : corner) {
            vertex->normal += normal;
        }
    }
    for (Vertex& vertex : mesh.vertices) {
        vertex.normal = Unit(vertex.normal);
    }
}

}  // namespace

bool PrepareMesh(Mesh& mesh)
{
    if (mesh.vertices.empty() || mesh.indices.empty() || !FitToUnitSize(mesh)) {
        return false;
    }
    mesh.closed = IsClosed(mesh);
    if (mesh.closed && SignedVolume(mesh) < 0) {
        TurnInsideOut(mesh);
    }
    ComputeNormals(mesh);
    ComputeBox(mesh);
    return true;
}

void ComputeBox(Mesh& mesh)
{
    ZmBbox& box = mesh.box;
    box.Max = box.Min = mesh.vertices.front().position;
    for (const Vertex& vertex : mesh.vertices) {
        for (int axis = 0; axis < 3; ++axis) {
            box.Max[axis] = std::max(box.Max[axis], vertex.position[axis]);
            box.Min[axis] = std::min(box.Min[axis], vertex.position[axis]);
        }
    }
}

// The bulk functions only read their sources, but their record has one pointer type for both uses.
ZmStridedData Positions(const Mesh& mesh)
{
    return {const_cast<ZmVector*>(&mesh.vertices.front().position), sizeof(Vertex)};
}

ZmStridedData Normals(const Mesh& mesh)
{
    return {const_cast<ZmVector*>(&mesh.vertices.front().normal), sizeof(Vertex)};
}

ZmVector Unit(const ZmVector& v, const ZmVector& fallback)
{
    const float length = Length(v);
    return length > 1e-18f ? v * (1 / length) : fallback;
}
