#pragma once

/// Includes the headers of one family: intersections, distances, culling, picking and best-fit boxes.

#include "ZmBestFitBBox.h"
#include "ZmCulling.h"
#include "ZmDistance.h"
#include "ZmEigenMatrix.h"
#include "ZmIntersect.h"
#include "ZmOBB.h"
#include "ZmPicking.h"
#include "ZmRay.h"
#include "ZmSphere.h"
