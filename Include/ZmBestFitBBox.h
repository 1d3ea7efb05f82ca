#pragma once

#include "ZmMatrix.h"

/// Fits an oriented box to a cloud of points: `result` takes the cube from -1 to 1 onto the box, whose axes are
/// the eigenvectors of the points' covariance, in no particular order. `additionalBorder` is added to each
/// half-size.
///
/// A point is three floats at the start of its element; elements start `stride` bytes apart at any alignment,
/// and only the points' own bytes are read. Flat, straight and single-point clouds give boxes with
/// half-sizes of 0 plus the border. The cloud may be of any size: it is scaled before its axes are looked for.
/// Any thread.
///
/// Returns 1, or 0
/// - for a count below 1 or a null pointer, with `result` the identity;
/// - when an element of the first three columns exceeds 1e6 or is no number, with `result` as computed.
/// Takes the vector path with the SSE feature bit set; both give the same bits.
ZM_API int ZmComputeBestFitBBox(const unsigned char* points, unsigned long stride, int count, ZmMatrix& result,
                                float additionalBorder);
