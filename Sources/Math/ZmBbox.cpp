#include "ZmBbox.h"

#include "Math/Lanes.h"
#include "Math/MatrixFloats.h"
#include "Platform/FeatureWord.h"

namespace zm {
namespace {

// The bits of the lower and upper sides of each axis.
constexpr uint32_t kBelow[3] = {ZMCLIP_LEFT, ZMCLIP_BOTTOM, ZMCLIP_BACK};
constexpr uint32_t kAbove[3] = {ZMCLIP_RIGHT, ZMCLIP_TOP, ZMCLIP_FRONT};

uint32_t SideBits(const uint32_t (&bits)[3], unsigned lanes)
{
    return ((lanes & 1) ? bits[0] : 0) | ((lanes & 2) ? bits[1] : 0) | ((lanes & 4) ? bits[2] : 0);
}

/// The side bits for every combination of three axes.
struct SideTable {
    uint32_t below[8], above[8];

    explicit SideTable(unsigned axes)
    {
        for (unsigned lanes = 0; lanes < 8; ++lanes) {
            below[lanes] = SideBits(kBelow, lanes & axes);
            above[lanes] = SideBits(kAbove, lanes & axes);
        }
    }
};

template <class L>
void WriteSideFlags(const ZmBbox& box, const SideTable& table, int count, const unsigned char* vertex,
                    unsigned long strideBytes, unsigned long* flags)
{
    const L min = L::Load3(&box.Min), max = L::Load3(&box.Max);
    for (int i = 0; i < count; ++i, vertex += strideBytes) {
        const L v = L::Load3(vertex);
        flags[i] = table.below[L::LessMask(v, min) & 7] | table.above[L::LessMask(max, v) & 7];
    }
}

void ClassifyOnAxes(const ZmBbox& box, unsigned axes, int count, const unsigned char* vertices,
                    unsigned long strideBytes, unsigned long* flags)
{
    Dispatch(WriteSideFlags<SseLanes>, WriteSideFlags<ScalarLanes>, box, SideTable(axes), count, vertices, strideBytes,
             flags);
}

// Each axis of the old box contributes the smaller and the larger of its two images to the new corners: the same sums,
// in the same order, as transforming all eight corners would give.
template <class L>
void BoxAround(ZmBbox& res, const ZmBbox& box, const float* m)
{
    const L row0 = L::Load4(m), row1 = L::Load4(m + 4), row2 = L::Load4(m + 8), row3 = L::Load4(m + 12);
    const L ax = L::Splat(box.Min.x) * row0, bx = L::Splat(box.Max.x) * row0;
    const L ay = L::Splat(box.Min.y) * row1, by = L::Splat(box.Max.y) * row1;
    const L az = L::Splat(box.Min.z) * row2, bz = L::Splat(box.Max.z) * row2;
    ((L::Max(ax, bx) + L::Max(ay, by)) + (L::Max(az, bz) + row3)).Store3(&res.Max);
    ((L::Min(ax, bx) + L::Min(ay, by)) + (L::Min(az, bz) + row3)).Store3(&res.Min);
}

/// The corner that takes Max on the axes whose bit is set in `index`, else Min.
ZmVector Corner(const ZmBbox& box, int index)
{
    return {(index & 1) ? box.Max.x : box.Min.x, (index & 2) ? box.Max.y : box.Min.y,
            (index & 4) ? box.Max.z : box.Min.z};
}

bool Contains(const ZmBbox& outer, const ZmBbox& inner)
{
    for (int i = 0; i < 3; ++i) {
        if (inner.Min[i] < outer.Min[i] || inner.Max[i] > outer.Max[i]) {
            return false;
        }
    }
    return true;
}

bool Contains(const ZmBbox& box, const ZmVector& pt)
{
    return Contains(box, ZmBbox{pt, pt});
}

bool Separated(const ZmBbox& a, const ZmBbox& b)
{
    for (int i = 0; i < 3; ++i) {
        if (b.Max[i] < a.Min[i] || b.Min[i] > a.Max[i]) {
            return true;
        }
    }
    return false;
}

/// Whether, on some axis, `middle` lies between pt and `last`, with gaps on both sides.
bool LiesBetween(const ZmVector& pt, const ZmBbox& middle, const ZmBbox& last)
{
    for (int i = 0; i < 3; ++i) {
        const bool upwards = pt[i] < middle.Min[i] && middle.Max[i] < last.Min[i];
        const bool downwards = pt[i] > middle.Max[i] && middle.Min[i] > last.Max[i];
        if (upwards || downwards) {
            return true;
        }
    }
    return false;
}

/// The corners of a box in clip space: four if it is flat in Z, else eight.
struct ClipCorners {
    ZmVector4 at[8];
    int count;

    ClipCorners(const ZmMatrix& worldProjection, const ZmBbox& box) : count(box.Max.z - box.Min.z == 0 ? 4 : 8)
    {
        for (int i = 0; i < count; ++i) {
            const ZmVector corner = Corner(box, i);
            Zm3DMultiplyMatrixVector4(&at[i], worldProjection, &corner);
        }
    }
};

uint32_t ClipFlags(const ZmVector4& p)
{
    return (p.x < -p.w ? ZMCLIP_LEFT : 0u) | (p.x > p.w ? ZMCLIP_RIGHT : 0u) | (p.y > p.w ? ZMCLIP_TOP : 0u) |
           (p.y < -p.w ? ZMCLIP_BOTTOM : 0u) | (p.z < 0 ? ZMCLIP_FRONT : 0u) | (p.z > p.w ? ZMCLIP_BACK : 0u);
}

/// The screen rectangle around the corners with w > 0; y points downwards.
ZmRect ScreenExtents(const ClipCorners& corners, const ZmRect& screen)
{
    const float halfWidth = (screen.right - screen.left) * 0.5f, halfHeight = (screen.bottom - screen.top) * 0.5f;
    const float centreX = screen.left + halfWidth, centreY = screen.top + halfHeight;
    ZmRect extents(1000000, 1000000, -1000000, -1000000);
    for (int i = 0; i < corners.count; ++i) {
        const ZmVector4& p = corners.at[i];
        if (p.w > 0) {
            const float x = p.x / p.w * halfWidth + centreX, y = centreY - p.y / p.w * halfHeight;
            extents.left = x < extents.left ? x : extents.left;
            extents.top = y < extents.top ? y : extents.top;
            extents.right = x > extents.right ? x : extents.right;
            extents.bottom = y > extents.bottom ? y : extents.bottom;
        }
    }
    return extents;
}

/// Close to the eye a projected edge is meaningless: clipped sides extend to the edge of the screen.
void ExtendToScreen(ZmRect& extents, const ZmRect& screen, uint32_t sides)
{
    extents.left = (sides & ZMCLIP_LEFT) ? screen.left : extents.left;
    extents.right = (sides & ZMCLIP_RIGHT) ? screen.right : extents.right;
    extents.top = (sides & ZMCLIP_TOP) ? screen.top : extents.top;
    extents.bottom = (sides & ZMCLIP_BOTTOM) ? screen.bottom : extents.bottom;
}

}  // namespace
}  // namespace zm

void ZmBbox::TransformTo(ZmVector* corners, const ZmMatrix& m) const
{
    const ZmBbox box = *this;  // a copy: `corners` may overlap this box
    for (int i = 0; i < 8; ++i) {
        const ZmVector corner = zm::Corner(box, i);
        Zm3DMultiplyMatrixVector(&corners[i], m, &corner);
    }
}

void ZmBbox::TransformFrom(const ZmBbox& box, const ZmMatrix& m)
{
    zm::Dispatch(zm::BoxAround<zm::SseLanes>, zm::BoxAround<zm::ScalarLanes>, *this, box, zm::FloatsOf(m));
}

int ZmBbox::Classify(const ZmBbox& box, const ZmVector& pt) const
{
    const bool separated = zm::Separated(*this, box);
    if (zm::Contains(*this, pt)) {
        return separated ? -1 : zm::Contains(*this, box) ? 1 : 0;
    }
    if (separated) {
        return zm::LiesBetween(pt, *this, box) ? -1 : zm::LiesBetween(pt, box, *this) ? 1 : 0;
    }
    if (zm::Contains(box, *this)) {
        return zm::Contains(box, pt) ? -1 : 1;
    }
    return 0;
}

void ZmBbox::ClassifyVertices(int count, const unsigned char* vertices, unsigned long strideBytes,
                              unsigned long* flags) const
{
    zm::ClassifyOnAxes(*this, 7, count, vertices, strideBytes, flags);
}

void ZmBbox::ClassifyVerticesOneAxis(int count, const unsigned char* vertices, unsigned long strideBytes, int axis,
                                     unsigned long* flags) const
{
    const unsigned axes = axis >= 0 && axis < 3 ? 1u << axis : 0u;
    zm::ClassifyOnAxes(*this, axes, count, vertices, strideBytes, flags);
}

int ZmTransformBox2D(const ZmMatrix& worldProjection, const ZmBbox& box, const ZmRect* screenSize, ZmRect* extents,
                     ZMCLIP_FLAGS& andFlags, ZMCLIP_FLAGS& orFlags)
{
    const zm::ClipCorners corners(worldProjection, box);
    uint32_t all = ZMCLIP_ALL, any = 0;
    for (int i = 0; i < corners.count; ++i) {
        const uint32_t flags = zm::ClipFlags(corners.at[i]);
        all &= flags;
        any |= flags;
    }
    andFlags = ZMCLIP_FLAGS(all);
    orFlags = ZMCLIP_FLAGS(any);
    if (extents && screenSize) {
        const ZmRect screen = *screenSize;  // a copy: `extents` may be the same rectangle
        if (all == 0) {
            *extents = zm::ScreenExtents(corners, screen);
        }
        if (any & ZMCLIP_FRONT) {
            zm::ExtendToScreen(*extents, screen, any);
        }
    }
    return all == 0;
}

void ZmProjectBoxZExtents(const ZmMatrix& worldProjection, const ZmBbox& box, float& zhMin, float& zhMax)
{
    const zm::ClipCorners corners(worldProjection, box);
    bool found = false;
    for (int i = 0; i < corners.count; ++i) {
        const ZmVector4& p = corners.at[i];
        if (p.w > 0) {
            const float depth = p.z / p.w;
            zhMin = found && zhMin < depth ? zhMin : depth;
            zhMax = found && zhMax > depth ? zhMax : depth;
            found = true;
        }
    }
}
