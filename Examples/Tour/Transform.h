#pragma once

#include "Mesh.h"

/// The transformed vertices of one model; the memory is reused for the next model.
class TransformedMesh {
public:
    /// Transforms all positions to clip space and computes the sides on which each lies outside.
    void ToClipSpace(const Mesh& mesh, const ZmMatrix& modelToClip);

    /// Transforms all normals by the linear part of `modelToWorld`; they are not of unit length if that scales.
    void TurnNormals(const Mesh& mesh, const ZmMatrix& modelToWorld);

    std::vector<ZmVector4> clip;
    std::vector<uint32_t> flags;  ///< ZMCLIP_FLAGS
    std::vector<ZmVector> normals;
};

/// The ZMCLIP_FLAGS of a point in clip space.
uint32_t ClipFlags(const ZmVector4& p);
