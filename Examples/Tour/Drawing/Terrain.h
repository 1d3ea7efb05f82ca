#pragma once

#include "Mesh.h"

#include <deque>

/// Height of the hills.
float GroundHeight(float x, float z);

/// The slope of the ground along x and z.
Zm2DVector GroundSlope(float x, float z);

/// The distance of a point from the middle of the path that winds through the meadow.
float PathDistance(float x, float z);

/// Makes the hills in front of an eye at the origin, in world coordinates: tiles that share their border vertices and
/// are finer near the eye.
std::deque<Mesh> MakeGroundTiles();

/// Makes a square of `kGrassPatchSize` with many blades around the origin, on flat ground. Sky increases from the root
/// to the tip of a blade; Ground varies from blade to blade.
Mesh MakeGrassPatch(uint32_t seed);

constexpr float kGrassPatchSize = 0.75f;

/// Makes one flower around the origin.
Mesh MakeFlower();
