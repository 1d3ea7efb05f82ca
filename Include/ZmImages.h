#pragma once

/// Includes the headers of one family: pixel formats and their conversion, palettes, scaling and normal maps.

#include "ZmBlit.h"
#include "ZmImageDescEx.h"
#include "ZmImageOptions.h"
#include "ZmNormalMap.h"
#include "ZmPixelFormat.h"
#include "ZmQuantization.h"
#include "ZmResize.h"
