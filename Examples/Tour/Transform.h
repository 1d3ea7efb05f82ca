#pragma once

#include "Mesh.h"

/// One model's vertices on their way to the screen; the memory is used again for
/// the next model.
class TransformedMesh {
public:
    /// All positions to clip space, and the sides of it on which each one lies outside.
    void ToClipSpace(const Mesh& mesh, const ZmMatrix& modelToClip);

    /// All normals by the linear part of `modelToWorld`; not of unit length if that scales.
    void TurnNormals(const Mesh& mesh, const ZmMatrix& modelToWorld);

    std::vector<ZmVector4> Clip;
    std::vector<uint32_t> Flags;  ///< ZMCLIP_FLAGS
    std::vector<ZmVector> Normals;
};

/// The ZMCLIP_FLAGS of a point in clip space.
uint32_t ClipFlags(const ZmVector4& p);
