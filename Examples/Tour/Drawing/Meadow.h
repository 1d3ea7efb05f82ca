#pragma once

#include "Scene.h"
#include "Settings.h"

/// Builds the scene of the tour: hills with grass and flowers, many copies of `statue`, the camera and the sun.
/// `statue` must be prepared and must outlive the scene.
void BuildMeadow(Scene& scene, const Mesh& statue, const Settings& settings);
