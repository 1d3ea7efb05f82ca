#pragma once

#include "Scene.h"
#include "Settings.h"

/// Places for copies of the statue: those of the scene file, then herds, the nearest first.
std::vector<Spot> ChooseSpots(const Settings& settings);

/// Where a copy of unit size stands: a little sunk into the ground.
ZmVector Footing(const Spot& spot);
ZmQuaternion Facing(const Spot& spot);

/// Builds the hills with grass and flowers, the camera and the sun.
void BuildLandscape(Scene& scene, const Settings& settings);

/// Builds the scene of the tour: hills with grass and flowers, many copies of `statue`, the camera and the sun.
/// `statue` must be prepared and must outlive the scene.
void BuildMeadow(Scene& scene, const Mesh& statue, const Settings& settings);
