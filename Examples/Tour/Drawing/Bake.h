#pragma once

#include "Mesh.h"

/// Sets Sky and Ground of each vertex: the share of ambient light that the rest of the mesh does not block. The mesh
/// stands on the ground at y = 0.
void BakeAmbientLight(Mesh& mesh);
