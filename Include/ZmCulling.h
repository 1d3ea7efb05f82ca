#pragma once

#include "ZmBbox.h"
#include "ZmFrustum.h"
#include "ZmRay.h"
#include "ZmSphere.h"
#include "ZmStridedData.h"

#include <stdint.h>

// Tests of one object against many boxes or spheres, and the bounds of many points.
//
// `boxes` are ZmBbox records and `spheres` ZmSphere records at any stride and alignment; nothing but their own 24 or 16
// bytes is read. Each test gives 1 or 0 for each element, and the functions return how many elements have 1. `hits`
// receives a byte for each element, `indices` the indices of those with 1 in ascending order; either may be null.
// `indices` must have room for `count` numbers, whatever the result. The results must not overlap the elements. A count
// below 1 gives 0. NaNs give a meaningless result, never a crash.
//
// Any thread may call. All functions give the same bits for every value of the feature word.

/// Finds what may be visible: 0 for a box that lies wholly in front of one of the frustum's six planes. A box outside
/// near a corner of the frustum may give 1. Unlike ZmIntersect::FrustumBox all planes count for every box. Of the
/// frustum only the planes are read (see ZmFrustum::Update()).
ZM_API int ZmCullBoxes(const ZmFrustum& frustum, const ZmStridedData& boxes, int count, uint8_t* hits,
                       uint32_t* indices);
/// The same for spheres.
ZM_API int ZmCullSpheres(const ZmFrustum& frustum, const ZmStridedData& spheres, int count, uint8_t* hits,
                         uint32_t* indices);

/// ZmIntersect::RayBox(ray, box) without points for each box: a ray from its origin onwards.
ZM_API int ZmRayBoxes(const ZmRay& ray, const ZmStridedData& boxes, int count, uint8_t* hits, uint32_t* indices);

/// ZmIntersect::AABBAABB(box, ...) for each box.
ZM_API int ZmBoxBoxes(const ZmBbox& box, const ZmStridedData& boxes, int count, uint8_t* hits, uint32_t* indices);

/// ZmIntersect::SphereAABB(sphere, ...) for each box.
ZM_API int ZmSphereBoxes(const ZmSphere& sphere, const ZmStridedData& boxes, int count, uint8_t* hits,
                         uint32_t* indices);

/// ZmBbox::TransformFrom for each box: the axis-aligned boxes around `boxes` transformed by m (affine). `res` may equal
/// `boxes`; other overlaps are not supported. Only the results' own 24 bytes are written.
ZM_API void ZmTransformBoxes(const ZmStridedData& res, const ZmStridedData& boxes, const ZmMatrix& m, int count);

/// The smallest box around points, three floats each at any stride and alignment, of which nothing else is read: the
/// bits of ZmBoxFromPoints (ZmBuilders.h), faster for more than a handful of points. A count below 1 gives
/// ZmEmptyBox().
ZM_API ZmBbox ZmBoxOfPoints(const ZmStridedData& points, int count);

/// A sphere around points, centred on their box: the bits of ZmSphereFromPoints. A count below 1 gives a radius of 0 at
/// the origin.
ZM_API ZmSphere ZmSphereOfPoints(const ZmStridedData& points, int count);
