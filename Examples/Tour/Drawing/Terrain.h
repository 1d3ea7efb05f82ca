#pragma once

#include "Mesh.h"

#include <deque>

/// Height of the hills.
float GroundHeight(float x, float z);

/// How the height changes along x and z.
Zm2DVector GroundSlope(float x, float z);

/// How far a point is from the middle of the path that winds through the meadow.
float PathDistance(float x, float z);

/// The hills in front of an eye at the origin, as tiles that share their border vertices,
/// finer near the eye. In world coordinates.
std::deque<Mesh> MakeGroundTiles();

/// A square of `kGrassPatchSize` with many blades around the origin, on flat ground.
/// Sky grows from the root to the tip of a blade, Ground differs from blade to blade.
Mesh MakeGrassPatch(uint32_t seed);

const float kGrassPatchSize = 0.75f;

/// One flower around the origin.
Mesh MakeFlower();
