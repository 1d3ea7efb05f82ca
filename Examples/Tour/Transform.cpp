#include "Transform.h"

void TransformedMesh::ToClipSpace(const Mesh& mesh, const ZmMatrix& modelToClip)
{
    const size_t count = mesh.vertices.size();
    clip.resize(count);
    flags.resize(count);
    const ZmStridedData destination(clip.data(), sizeof(ZmVector4)), source = Positions(mesh);
    Zm3DMultiplyMatrixVector4Strided(&destination, &source, modelToClip, int(count));
    for (size_t i = 0; i < count; ++i) {
        flags[i] = ClipFlags(clip[i]);
    }
}

void TransformedMesh::TurnNormals(const Mesh& mesh, const ZmMatrix& modelToWorld)
{
    const size_t count = mesh.vertices.size();
    normals.resize(count);
    const ZmStridedData destination(normals.data(), sizeof(ZmVector)), source = Normals(mesh);
    Zm3DRotateVectorStrided(&destination, &source, modelToWorld, int(count));
}

uint32_t ClipFlags(const ZmVector4& p)
{
    return (p.x < -p.w ? ZMCLIP_LEFT : 0u) | (p.x > p.w ? ZMCLIP_RIGHT : 0u) | (p.y > p.w ? ZMCLIP_TOP : 0u) |
           (p.y < -p.w ? ZMCLIP_BOTTOM : 0u) | (p.z < 0 ? ZMCLIP_FRONT : 0u) | (p.z > p.w ? ZMCLIP_BACK : 0u);
}
