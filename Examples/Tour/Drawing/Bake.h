#pragma once

#include "Mesh.h"

/// Sets Sky and Ground of each vertex: how much of the light from all around reaches it
/// past the rest of the mesh, which stands on the ground at y = 0.
void BakeAmbientLight(Mesh& mesh);
