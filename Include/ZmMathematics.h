#pragma once

/// Includes the headers of one family: vectors, matrices, quaternions, boxes, frustums, colours and arrays of them.

#include "ZmAnimation.h"
#include "ZmArithmetic.h"
#include "ZmBbox.h"
#include "ZmBuilders.h"
#include "ZmColor.h"
#include "ZmDecomposition.h"
#include "ZmFPU.h"
#include "ZmFrustum.h"
#include "ZmInline.h"
#include "ZmInterpolation.h"
#include "ZmKeyFrames.h"
#include "ZmMatrix.h"
#include "ZmOperators.h"
#include "ZmPlane.h"
#include "ZmProcessor.h"
#include "ZmQuaternion.h"
#include "ZmRect.h"
#include "ZmStridedData.h"
#include "ZmTrigonometry.h"
#include "ZmVector.h"
