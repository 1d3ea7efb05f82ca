#pragma once

#include "Scene.h"
#include "Settings.h"

/// The scene of the tour: hills with grass and flowers, many copies of `statue`, the
/// camera and the sun. `statue` must be prepared, and stays with the caller.
void BuildMeadow(Scene& scene, const Mesh& statue, const Settings& settings);
