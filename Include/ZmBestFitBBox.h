#pragma once

#include "ZmMatrix.h"
#include "ZmStridedData.h"

#include <stdint.h>

/// Fits an oriented box to a point cloud: `result` maps the cube from -1 to 1 onto the box. The axes are the
/// eigenvectors of the points' covariance, in no particular order. `additionalBorder` is added to each half-size.
///
/// A point is three floats at the start of its element; elements start `stride` bytes apart at any alignment, and only
/// the points' own bytes are read. Flat, straight and single-point clouds give half-sizes of 0 plus the border. The
/// cloud may have any extent: it is scaled before its axes are computed. Any thread may call.
///
/// Returns 1, or 0
/// - for a count below 1 or a null pointer, with `result` the identity;
/// - if an element of the first three columns exceeds 1e6 or is NaN, with `result` as computed.
/// Takes the vector path when the SSE feature bit is set; both paths give the same bits.
ZM_API int ZmComputeBestFitBBox(const unsigned char* points, unsigned long stride, int count, ZmMatrix& result,
                                float additionalBorder);

/// Points of one cloud: three floats each, at any stride and alignment.
struct ZmPointCloud {
    ZmStridedData points;  ///< only read
    int count;             ///< below 1: an empty cloud
};

/// ZmComputeBestFitBBox for each of `count` clouds, with the same bits except for NaNs: the pieces of a scene, say.
/// `res` are ZmMatrix records at any stride and alignment, of which only their own 64 bytes are written; they must not
/// overlap the points. `fitted`, unless null, receives 1 or 0 for each cloud. Returns how many have 1. Eight clouds
/// share the search for their axes, which for clouds of up to a hundred points takes most of the time. Any thread may
/// call.
ZM_API int ZmComputeBestFitBBoxes(const ZmStridedData& res, const ZmPointCloud* clouds, int count,
                                  float additionalBorder, uint8_t* fitted);
