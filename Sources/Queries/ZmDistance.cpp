#include "ZmDistance.h"

#include "Queries/Tolerances.h"

using namespace zm;

namespace {

/// Vectors in double: differences and products of floats lose nothing there.
struct DoubleVector {
    double x, y, z;

    DoubleVector(double vx, double vy, double vz) : x(vx), y(vy), z(vz) {}
    DoubleVector(const ZmVector& v) : x(v.x), y(v.y), z(v.z) {}
};

inline DoubleVector operator-(const DoubleVector& a, const DoubleVector& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline DoubleVector operator+(const DoubleVector& a, const DoubleVector& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline DoubleVector operator*(const DoubleVector& v, double s)
{
    return {v.x * s, v.y * s, v.z * s};
}

inline double Dot(const DoubleVector& a, const DoubleVector& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// The nearest parameter that the object has.
template <Reach reach>
inline double Clamp(double t)
{
    const double fromStart = reach == Reach::Line || t > 0 ? t : 0;
    return reach == Reach::Segment && fromStart > 1 ? 1 : fromStart;
}

inline void Store(float* res, double value)
{
    if (res) {
        *res = float(value);
    }
}

/// Squared sine of the angle below which directions made of floats are parallel for all that one can tell.
const double kParallelSquare = 0x1p-44;

template <Reach reach0, Reach reach1>
inline bool AreParallel(double determinant, double scale)
{
    if (reach0 == Reach::Line && reach1 == Reach::Line) {
        return determinant < kEpsilon * (scale < 1 ? scale : 1) || determinant <= kParallelSquare * scale;
    }
    return determinant <= kParallelSquare * scale;
}

/// The squared distance of two objects is s (a00 s + 2 a01 t + 2 b0) + t (a11 t + 2 b1) + c, a convex function: where
/// its minimum lies outside the range of one parameter, the minimum of the range lies on that edge. So it
/// takes three steps: the best t, clamped, the best s for it, clamped, and, where that moved s, the best t again.
template <Reach reach0, Reach reach1>
inline float SquareDistance(const ZmRay& object0, const ZmRay& object1, float* t0, float* t1)
{
    const DoubleVector d0 = object0.Direction, d1 = object1.Direction;
    const DoubleVector between = DoubleVector(object0.Origin) - DoubleVector(object1.Origin);
    const double a00 = Dot(d0, d0), a01 = -Dot(d0, d1), a11 = Dot(d1, d1);
    const double b0 = Dot(between, d0), b1 = -Dot(between, d1);
    const double scale = a00 * a11, determinant = scale - a01 * a01;
    const double inverse0 = a00 > 0 ? 1 / a00 : 0, inverse1 = a11 > 0 ? 1 / a11 : 0;

    double t = (a01 * b0 - a00 * b1) / determinant;
    if (AreParallel<reach0, reach1>(determinant, scale)) {
        t = a00 > 0 ? 0 : -b1 * inverse1;
    }
    t = Clamp<reach1>(t);
    const double wanted = -(b0 + a01 * t) * inverse0, s = Clamp<reach0>(wanted);
    t = s == wanted ? t : Clamp<reach1>(-(b1 + a01 * s) * inverse1);

    const DoubleVector apart = between + d0 * s - d1 * t;
    Store(t0, s);
    Store(t1, t);
    return float(Dot(apart, apart));
}

template <Reach reach>
inline float SquareDistance(const ZmVector& point, const ZmRay& object, float* res)
{
    const DoubleVector direction = object.Direction, offset = DoubleVector(point) - DoubleVector(object.Origin);
    const double along = Dot(offset, direction), square = Dot(direction, direction);
    double t = along / square;
    if (reach != Reach::Line && along <= 0) {
        t = 0;
    } else if (reach == Reach::Segment && along >= square) {
        t = 1;
    }
    const DoubleVector apart = offset - direction * t;
    Store(res, t);
    return float(Dot(apart, apart));
}

}  // namespace

float ZmDistance::LineLineSquareDistance(const ZmRay& line0, const ZmRay& line1, float* t0, float* t1)
{
    return SquareDistance<Reach::Line, Reach::Line>(line0, line1, t0, t1);
}

float ZmDistance::LineRaySquareDistance(const ZmRay& line, const ZmRay& ray, float* t0, float* t1)
{
    return SquareDistance<Reach::Line, Reach::Ray>(line, ray, t0, t1);
}

float ZmDistance::LineSegmentSquareDistance(const ZmRay& line, const ZmRay& segment, float* t0, float* t1)
{
    return SquareDistance<Reach::Line, Reach::Segment>(line, segment, t0, t1);
}

float ZmDistance::RayRaySquareDistance(const ZmRay& ray0, const ZmRay& ray1, float* t0, float* t1)
{
    return SquareDistance<Reach::Ray, Reach::Ray>(ray0, ray1, t0, t1);
}

float ZmDistance::RaySegmentSquareDistance(const ZmRay& ray, const ZmRay& segment, float* t0, float* t1)
{
    return SquareDistance<Reach::Ray, Reach::Segment>(ray, segment, t0, t1);
}

float ZmDistance::SegmentSegmentSquareDistance(const ZmRay& segment0, const ZmRay& segment1, float* t0, float* t1)
{
    return SquareDistance<Reach::Segment, Reach::Segment>(segment0, segment1, t0, t1);
}

float ZmDistance::PointLineSquareDistance(const ZmVector& point, const ZmRay& line, float* t)
{
    return SquareDistance<Reach::Line>(point, line, t);
}

float ZmDistance::PointRaySquareDistance(const ZmVector& point, const ZmRay& ray, float* t)
{
    return SquareDistance<Reach::Ray>(point, ray, t);
}

float ZmDistance::PointSegmentSquareDistance(const ZmVector& point, const ZmRay& segment, float* t)
{
    return SquareDistance<Reach::Segment>(point, segment, t);
}
