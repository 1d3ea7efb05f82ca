// The queries in their plain textbook forms, with early exits.

#include "../Harness.h"
#include "../PlainVectors.h"
#include "../QueryInputs.h"

#include <algorithm>
#include <cmath>

namespace bench {
namespace {

void BoxBox(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        const float *a = in.boxes[i], *b = in.otherBoxes[j];
        for (int axis = 0; axis < 3; ++axis) {
            if (a[3 + axis] > b[axis] || a[axis] < b[3 + axis]) {
                return 0;
            }
        }
        return 1;
    });
}

/// Not counted: six inlined comparisons cost less than any call.
void BoxBoxWithoutBranches(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        const float *a = in.boxes[i], *b = in.otherBoxes[j];
        return (a[3] <= b[0]) & (a[0] >= b[3]) & (a[4] <= b[1]) & (a[1] >= b[4]) & (a[5] <= b[2]) & (a[2] >= b[5]);
    });
}

void SphereBox(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        const float *sphere = in.spheres[i], *box = in.boxes[j];
        float square = 0;
        for (int axis = 0; axis < 3; ++axis) {
            if (sphere[axis] < box[3 + axis]) {
                square += (sphere[axis] - box[3 + axis]) * (sphere[axis] - box[3 + axis]);
            } else if (sphere[axis] > box[axis]) {
                square += (sphere[axis] - box[axis]) * (sphere[axis] - box[axis]);
            }
        }
        return square <= sphere[3] * sphere[3];
    });
}

/// The slab test with divisions.
void RayBoxBySlabs(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        const float *ray = in.rays[i], *box = in.boxes[j];
        float first = 0, last = 1e30f;
        for (int axis = 0; axis < 3; ++axis) {
            const float origin = ray[axis], direction = ray[3 + axis];
            if (std::fabs(direction) < 1e-7f) {
                if (origin < box[3 + axis] || origin > box[axis]) {
                    return 0;
                }
                continue;
            }
            float t0 = (box[3 + axis] - origin) / direction, t1 = (box[axis] - origin) / direction;
            if (t0 > t1) {
                std::swap(t0, t1);
            }
            first = std::max(first, t0);
            last = std::min(last, t1);
            if (first > last) {
                return 0;
            }
        }
        return 1;
    });
}

void RayBoxByAxes(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        const float *ray = in.rays[i], *box = in.boxes[j];
        float half[3], offset[3], size[3];
        for (int axis = 0; axis < 3; ++axis) {
            half[axis] = (box[axis] - box[3 + axis]) * 0.5f;
            offset[axis] = ray[axis] - (box[axis] + box[3 + axis]) * 0.5f;
            size[axis] = std::fabs(ray[3 + axis]);
            if (std::fabs(offset[axis]) > half[axis] && offset[axis] * ray[3 + axis] >= 0) {
                return 0;
            }
        }
        const Vec c = Cross(Vec(ray + 3), Vec(offset));
        if (std::fabs(c.x) > size[1] * half[2] + size[2] * half[1]) {
            return 0;
        }
        if (std::fabs(c.y) > size[0] * half[2] + size[2] * half[0]) {
            return 0;
        }
        return int(std::fabs(c.z) <= size[0] * half[1] + size[1] * half[0]);
    });
}

/// Makes the compiler keep a result.
void Keep(float result)
{
    [[maybe_unused]] volatile float kept = result;
}

void RaySphere(const Work& w)
{
    Vec first(0, 0, 0), second(0, 0, 0);
    EachPair(w, [&](const QueryInputs& in, int i, int j) {
        const float *ray = in.rays[i], *sphere = in.balls[j];
        const Vec d(ray + 3), origin(ray), unit = d * (1 / std::sqrt(Dot(d, d))), offset = Vec(sphere) - origin;
        const float middle = Dot(offset, unit);
        const float discriminant = sphere[3] * sphere[3] - (Dot(offset, offset) - middle * middle);
        if (discriminant < 0) {
            return 0;
        }
        first = origin + unit * (middle - std::sqrt(discriminant));
        second = origin + unit * (middle + std::sqrt(discriminant));
        return discriminant > 0 ? 2 : 1;
    });
    Keep(Dot(first, second));
}

void MovingSpheres(const Work& w)
{
    float first = 0, last = 0;
    EachPair(w, [&](const QueryInputs& in, int i, int j) {
        const float *a = in.movers[i], *b = in.balls[j];
        const Vec between = Vec(b) - Vec(a), motion = (Vec(b + 4) - Vec(b)) - (Vec(a + 4) - Vec(a));
        const float reach = a[3] + b[3], gap = Dot(between, between) - reach * reach;
        if (gap <= 0) {
            return 1;
        }
        const float square = Dot(motion, motion), middle = Dot(motion, between);
        const float discriminant = middle * middle - square * gap;
        if (square == 0 || discriminant < 0) {
            return 0;
        }
        first = (-middle - std::sqrt(discriminant)) / square;
        last = (std::sqrt(discriminant) - middle) / square;
        return int(first >= 0 && first <= 1);
    });
    Keep(first + last);
}

/// T. Moeller and B. Trumbore, Journal of Graphics Tools 2(1), 1997, with the point that ours returns.
void RayTriangle(const Work& w)
{
    volatile float sink;
    EachPair(w, [&](const QueryInputs& in, int i, int j) {
        const float *ray = in.faceRays[i], *triangle = in.triangles[j];
        const Vec origin(ray), direction(ray + 3), corner(triangle);
        const Vec edge1 = Vec(triangle + 3) - corner, edge2 = Vec(triangle + 6) - corner;
        const Vec p = Cross(direction, edge2);
        const float determinant = Dot(edge1, p);
        if (std::fabs(determinant) < 1e-7f) {
            return 0;
        }
        const float inverse = 1 / determinant;
        const Vec offset = origin - corner;
        const float u = Dot(offset, p) * inverse;
        if (u < 0 || u > 1) {
            return 0;
        }
        const Vec q = Cross(offset, edge1);
        const float v = Dot(direction, q) * inverse;
        if (v < 0 || u + v > 1) {
            return 0;
        }
        const float t = Dot(edge2, q) * inverse;
        if (t < 0) {
            return 0;
        }
        const Vec point = origin + direction * t;
        sink = point.x + point.y + point.z;
        return 1;
    });
}

/// S. Gottschalk, M. Lin and D. Manocha, "OBBTree", 1996.
int OverlapOriented(const float* a, const float* b)
{
    float r[3][3], size[3][3], t[3];
    const Vec between = Vec(b) - Vec(a);
    for (int i = 0; i < 3; ++i) {
        const Vec axis(a + 3 + 3 * i);
        t[i] = Dot(between, axis);
        for (int j = 0; j < 3; ++j) {
            r[i][j] = Dot(axis, Vec(b + 3 + 3 * j));
            size[i][j] = std::fabs(r[i][j]);
        }
    }
    const float *ea = a + 12, *eb = b + 12;
    for (int i = 0; i < 3; ++i) {
        if (std::fabs(t[i]) > ea[i] + eb[0] * size[i][0] + eb[1] * size[i][1] + eb[2] * size[i][2]) {
            return 0;
        }
    }
    for (int j = 0; j < 3; ++j) {
        const float distance = t[0] * r[0][j] + t[1] * r[1][j] + t[2] * r[2][j];
        if (std::fabs(distance) > eb[j] + ea[0] * size[0][j] + ea[1] * size[1][j] + ea[2] * size[2][j]) {
            return 0;
        }
    }
    for (int i = 0; i < 3; ++i) {
        const int i1 = (i + 1) % 3, i2 = (i + 2) % 3;
        for (int j = 0; j < 3; ++j) {
            const int j1 = (j + 1) % 3, j2 = (j + 2) % 3;
            const float radius =
                ea[i1] * size[i2][j] + ea[i2] * size[i1][j] + eb[j1] * size[i][j2] + eb[j2] * size[i][j1];
            if (std::fabs(t[i2] * r[i1][j] - t[i1] * r[i2][j]) > radius) {
                return 0;
            }
        }
    }
    return 1;
}

void OrientedBoxes(const Work& w)
{
    EachPair(w,
             [](const QueryInputs& in, int i, int j) { return OverlapOriented(in.oriented[i], in.otherOriented[j]); });
}

/// Tests centre and radius of a box, placed by a matrix, against each plane.
void FrustumPlanesBox(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        const float *box = in.frustumBoxes[j], *m = in.matrices[i];
        const float half[3] = {(box[0] - box[3]) * 0.5f, (box[1] - box[4]) * 0.5f, (box[2] - box[5]) * 0.5f};
        const Vec axes[3] = {Vec(m) * half[0], Vec(m + 4) * half[1], Vec(m + 8) * half[2]};
        const Vec centre = Vec(m) * ((box[0] + box[3]) * 0.5f) + Vec(m + 4) * ((box[1] + box[4]) * 0.5f) +
                           Vec(m + 8) * ((box[2] + box[5]) * 0.5f) + Vec(m + 12);
        for (const float(&plane)[4] : in.frustumPlanes) {
            const Vec normal(plane);
            const float radius =
                std::fabs(Dot(normal, axes[0])) + std::fabs(Dot(normal, axes[1])) + std::fabs(Dot(normal, axes[2]));
            if (Dot(normal, centre) + plane[3] < -radius) {
                return 0;
            }
        }
        return 1;
    });
}

float Clamp01(float t)
{
    return t < 0 ? 0 : t > 1 ? 1 : t;
}

/// C. Ericson, "Real-Time Collision Detection", 2005, 5.1.9.
void SegmentSegment(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        const float *first = in.segments[i], *second = in.otherSegments[j];
        const Vec d1(first + 3), d2(second + 3), r = Vec(first) - Vec(second);
        const float a = Dot(d1, d1), e = Dot(d2, d2), f = Dot(d2, r), c = Dot(d1, r), b = Dot(d1, d2);
        const float determinant = a * e - b * b;
        float s = determinant != 0 ? Clamp01((b * f - c * e) / determinant) : 0;
        float t = (b * s + f) / e;
        if (t < 0) {
            t = 0;
            s = Clamp01(-c / a);
        } else if (t > 1) {
            t = 1;
            s = Clamp01((b - c) / a);
        }
        const Vec apart = r + d1 * s - d2 * t;
        return Dot(apart, apart);
    });
}

constexpr Entry kEntries[] = {
    {"Queries/box-box", BoxBox, "early exits"},
    {"Queries/box-box", BoxBoxWithoutBranches, "without branches", nullptr, true},
    {"Queries/sphere-box", SphereBox},
    {"Queries/ray-box", RayBoxBySlabs, "slabs"},
    {"Queries/ray-box", RayBoxByAxes, "axes"},
    {"Queries/ray-sphere", RaySphere},
    {"Queries/moving-spheres", MovingSpheres},
    {"Queries/ray-triangle", RayTriangle},
    {"Queries/oriented-boxes", OrientedBoxes},
    {"Queries/frustum-planes-box", FrustumPlanesBox},
    {"Queries/segment-segment", SegmentSegment},
};

}  // namespace

extern const Contender kQueryForms;
constexpr Contender kQueryForms{"plain form", Role::PEER, kEntries};

}  // namespace bench
