#pragma once

#include "ZmMatrix.h"
#include "ZmRect.h"

#include <stdint.h>

/// Sides of homogeneous clip space on which a point (x, y, z, w) lies outside, and sides of a box in ZmBbox. For a box,
/// "below" is the LOWER bit of the X pair but the HIGHER bit of the Y and Z pairs.
enum ZMCLIP_FLAGS : uint32_t {
    ZMCLIP_NONE = 0,
    ZMCLIP_LEFT = 0x10,    ///< x < -w; below the box in X
    ZMCLIP_RIGHT = 0x20,   ///< x > w; above it in X
    ZMCLIP_TOP = 0x40,     ///< y > w; above it in Y
    ZMCLIP_BOTTOM = 0x80,  ///< y < -w; below it in Y
    ZMCLIP_FRONT = 0x100,  ///< z < 0; above it in Z
    ZMCLIP_BACK = 0x200,   ///< z > w; below it in Z
    ZMCLIP_ALL = 0x3F0     ///< any of the six
};

/// Axis-aligned box, valid when Min <= Max on every axis. The LARGEST corner is stored first; array code relies on that
/// order. Boundaries belong to the box. Functions are reentrant and report no errors.
struct ZmBbox {
    ZmVector Max;  ///< the largest corner
    ZmVector Min;  ///< the smallest corner

    /// Writes the eight corners, transformed as points by m. Bit 0 of a corner's index selects Max.x over Min.x, bit 1
    /// Max.y, bit 2 Max.z.
    ZM_API void TransformTo(ZmVector* corners, const ZmMatrix& m) const;

    /// Sets this to the axis-aligned box around `box` transformed by m (affine). `box` may be this box. Takes the
    /// four-wide path when the SSE feature bit is set; both paths give the same bits.
    ZM_API void TransformFrom(const ZmBbox& box, const ZmMatrix& m);

    /// Returns which of two boxes is in front, seen from pt: 1 the other box, -1 this box, 0 undecided. In order:
    /// - pt inside this box: -1 if the boxes are separated; otherwise 1 if this box contains the other, else 0;
    /// - separated boxes: -1 if this box lies between pt and the other along an axis that
    ///   separates the boxes, else 1 if the other lies between pt and this one along such
    ///   an axis, else 0;
    /// - the other box contains this one: -1 if pt is inside the other, else 1;
    /// - any other overlap: 0.
    ZM_API int Classify(const ZmBbox& box, const ZmVector& pt) const;

    /// Writes one word per vertex: the OR of the ZMCLIP_FLAGS sides on which the vertex lies outside this box, 0 inside
    /// it. Vertices are three floats each and start `strideBytes` apart at any alignment; only their own 12 bytes are
    /// read. `flags` is a tight array of `count` words. Neither pointer may be null. NaNs count as inside. A count
    /// below 1 writes nothing. Both paths of the SSE feature bit give the same flags.
    ZM_API void ClassifyVertices(int count, const unsigned char* vertices, unsigned long strideBytes,
                                 unsigned long* flags) const;

    /// The same for one axis only: 0 X, 1 Y, 2 Z. Any other axis gives flags of 0.
    ZM_API void ClassifyVerticesOneAxis(int count, const unsigned char* vertices, unsigned long strideBytes, int axis,
                                        unsigned long* flags) const;
};

/// Projects a box. `andFlags` and `orFlags` receive the AND and the OR of the corners' clip flags. Returns 1 if the box
/// may be visible, 0 if it lies wholly outside one clip plane. A box that is flat in Z (Max.z == Min.z) has four
/// corners.
///
/// `extents`, unless null, receives the rectangle around the corners with w > 0 on the screen `screenSize`. It stays
/// unchanged if the box is wholly outside one plane. If a corner lies in front of the near plane (ZMCLIP_FRONT in
/// orFlags), each edge whose side bit is in orFlags becomes the screen's own edge, even for a box that is wholly
/// outside. If no corner has w > 0, the rectangle is the empty one from 1000000 to -1000000. A null `screenSize` counts
/// as a null `extents`. Both paths of the SSE feature bit give the same bits. No static storage is used, so any thread
/// may call.
ZM_API int ZmTransformBox2D(const ZmMatrix& worldProjection, const ZmBbox& box, const ZmRect* screenSize,
                            ZmRect* extents, ZMCLIP_FLAGS& andFlags, ZMCLIP_FLAGS& orFlags);

/// Writes the smallest and largest z / w of the box's corners with w > 0. If there is no such corner, both stay
/// unchanged.
ZM_API void ZmProjectBoxZExtents(const ZmMatrix& worldProjection, const ZmBbox& box, float& zhMin, float& zhMax);
