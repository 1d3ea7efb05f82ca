#pragma once

#include "ZmApi.h"

/// The share of pixels from which a palette is learnt when an image is converted to 256 colours: 1 looks at all of
/// them, n at one in n, which is faster and coarser. 15 at first.
ZM_API int GetQuantizationSamplingFactor();

/// Takes effect in the conversions that begin afterwards, on all threads. Values below 1 are kept and count as 1.
ZM_API void SetQuantizationSamplingFactor(int factor);
