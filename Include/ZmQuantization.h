#pragma once

#include "ZmApi.h"

/// Sampling factor for the palette when an image is converted to 256 colours: 1 examines every pixel, n one pixel in n,
/// which is faster and coarser. Initially 15.
ZM_API int GetQuantizationSamplingFactor();

/// Affects conversions that begin afterwards, in all threads. Values below 1 are stored but count as 1.
ZM_API void SetQuantizationSamplingFactor(int factor);
