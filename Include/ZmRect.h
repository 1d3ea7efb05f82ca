#pragma once

#include "ZmVector.h"

/// Screen rectangle; y grows downwards, so top < bottom.
///
/// The four functions below change this rectangle in place and check nothing: a screen without width or height gives
/// NaNs or infinities. The arguments may be this rectangle itself.
struct ZmRect {
    /// The edges.
    float left, top, right, bottom;

    /// Leaves the edges undefined; sets them.
    ZmRect() = default;
    constexpr ZmRect(float l, float t, float r, float b) : left(l), top(t), right(r), bottom(b) {}

    /// Converts from the coordinates of srcScreen to those of destScreen.
    ZM_API void Transform(const ZmRect& destScreen, const ZmRect& srcScreen);

    /// Scales by destSize / srcSize.
    ZM_API void Transform(const Zm2DVector& destSize, const Zm2DVector& srcSize);

    /// Convert to coordinates in which `screen` reaches from 0 to 1, and back.
    ZM_API void TransformToHomogeneous(const ZmRect& screen);
    ZM_API void TransformFromHomogeneous(const ZmRect& screen);
};

/// Rectangle of whole pixels.
struct RKRECT {
    /// The edges.
    int left, top, right, bottom;
};

/// Point in whole pixels.
struct RKPOINT {
    /// Column and line.
    int x, y;
};

/// Returns 1 if the point is inside, including all four edges, else 0. Neither pointer may be null.
ZM_API int ZmPtInRect(const RKRECT* rect, const RKPOINT* pt);
