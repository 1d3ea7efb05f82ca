#pragma once

/// Everything at once. Costs little to include: no header of the library pulls in more than
/// small C headers.

#include "ZmBbox.h"
#include "ZmBestFitBBox.h"
#include "ZmColor.h"
#include "ZmDecomposition.h"
#include "ZmDistance.h"
#include "ZmEigenMatrix.h"
#include "ZmFPU.h"
#include "ZmFrustum.h"
#include "ZmIntersect.h"
#include "ZmMatrix.h"
#include "ZmOBB.h"
#include "ZmPlane.h"
#include "ZmProcessor.h"
#include "ZmQuaternion.h"
#include "ZmRay.h"
#include "ZmRect.h"
#include "ZmSphere.h"
#include "ZmStridedData.h"
#include "ZmTimeProfiler.h"
#include "ZmTrigonometry.h"
#include "ZmVector.h"
#include "ZmVersion.h"
