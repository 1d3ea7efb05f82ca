#pragma once

#include "Pick.h"
#include "Picture.h"

/// Draws the results of the queries over the picture: best-fit boxes around the copies of the mesh, the picked
/// triangle, and in a corner the frustum from outside with all boxes; those inside it are green.
void DrawOverlay(Picture& picture, const Scene& scene, const ZmMatrix& worldToClip, const ZmRay& mouse,
                 const PickedTriangle& picked);
