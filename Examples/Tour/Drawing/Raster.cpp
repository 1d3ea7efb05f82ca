#include "Raster.h"

namespace {

// Signed distance from one side of clip space; positive inside.
float Inside(const ZmVector4& p, uint32_t side)
{
    switch (side) {
    case ZMCLIP_LEFT: return p.w + p.x;
    case ZMCLIP_RIGHT: return p.w - p.x;
    case ZMCLIP_TOP: return p.w - p.y;
    case ZMCLIP_BOTTOM: return p.w + p.y;
    case ZMCLIP_FRONT: return p.z;
    default: return p.w - p.z;
    }
}

float Mix(float a, float b, float t)
{
    return a + (b - a) * t;
}

// Always computed from the inner to the outer corner, so that both triangles at an edge get the same point.
Corner Cut(const Corner& inner, const Corner& outer, uint32_t side)
{
    const float a = Inside(inner.position, side), b = Inside(outer.position, side);
    const float t = a / (a - b);
    const ZmVector4 &p = inner.position, &q = outer.position;
    return {{Mix(p.x, q.x, t), Mix(p.y, q.y, t), Mix(p.z, q.z, t), Mix(p.w, q.w, t)},
            inner.normal + (outer.normal - inner.normal) * t,
            Mix(inner.sky, outer.sky, t),
            Mix(inner.ground, outer.ground, t)};
}

int ClipBySide(Corner* res, const Corner* polygon, int count, uint32_t side)
{
    int resCount = 0;
    for (int i = 0; i < count; ++i) {
        const Corner &current = polygon[i], &next = polygon[(i + 1) % count];
        const bool currentInside = Inside(current.position, side) >= 0;
        const bool nextInside = Inside(next.position, side) >= 0;
        if (currentInside) {
            res[resCount++] = current;
        }
        if (currentInside != nextInside) {
            res[resCount++] = currentInside ? Cut(current, next, side) : Cut(next, current, side);
        }
    }
    return resCount;
}

// Samples are counted from the top left; clip space has Y up. The clamp only corrects rounding at the border.
int64_t ToGrid(float position, int size)
{
    const float limit = float(size) * float(GridTriangle::kUnit);
    return int64_t(std::lround(std::clamp((0.5f + 0.5f * position) * limit, 0.0f, limit)));
}

}  // namespace

int ClipTriangle(Corner res[kMostCorners], const Corner triangle[3], uint32_t flags)
{
    Corner whole[kMostCorners];
    int count = 3;
    std::copy(triangle, triangle + 3, res);
    for (uint32_t side = ZMCLIP_LEFT; side <= ZMCLIP_BACK && count >= 3; side <<= 1) {
        if ((flags & side) == 0) {
            continue;
        }
        std::copy(res, res + count, whole);
        count = ClipBySide(res, whole, count, side);
    }
    return count;
}

GridTriangle::GridTriangle(const Corner corners[3], const RasterTarget& target)
{
    for (int i = 0; i < 3; ++i) {
        const ZmVector4& p = corners[i].position;
        m_X[i] = ToGrid(p.x / p.w, target.width);
        m_Y[i] = ToGrid(-p.y / p.w, target.height);
    }
    m_Area = (m_X[1] - m_X[0]) * (m_Y[2] - m_Y[0]) - (m_Y[1] - m_Y[0]) * (m_X[2] - m_X[0]);
}

void GridTriangle::Flip()
{
    std::swap(m_X[1], m_X[2]);
    std::swap(m_Y[1], m_Y[2]);
    m_Area = -m_Area;
}

GridTriangle::EdgeFunction GridTriangle::MakeEdge(int from, int to, int startX, int startY) const
{
    const int64_t dx = m_X[to] - m_X[from], dy = m_Y[to] - m_Y[from];
    const int64_t x = int64_t(startX) * kUnit + kUnit / 2, y = int64_t(startY) * kUnit + kUnit / 2;
    const bool topOrLeft = dy < 0 || (dy == 0 && dx > 0);
    return {dx * (y - m_Y[from]) - dy * (x - m_X[from]), -dy * kUnit, dx * kUnit, topOrLeft ? 0 : -1};
}
