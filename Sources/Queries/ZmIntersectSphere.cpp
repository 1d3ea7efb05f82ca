#include "Math/Normalize.h"
#include "Platform/FeatureWord.h"
#include "Queries/SixFloats.h"
#include "ZmIntersect.h"

using namespace zm;

namespace {

/// Times at which two moving spheres touch.
struct Contacts {
    bool known;  ///< else there are none, and nothing to write
    bool ever;   ///< else both are 0 for want of relative motion
    float first, last;
};

/// a t^2 + b t + c = 0, the smaller solution first.
Contacts SolveContacts(float a, float b, float c)
{
    if (a == 0) {
        const float root = b != 0 ? -c / b : 0;
        return {true, b != 0, root, root};
    }
    const float discriminant = b * b - 4 * a * c;
    if (discriminant > 0) {
        const float root = sqrtf(discriminant);
        return {true, true, (-b - root) / (2 * a), (root - b) / (2 * a)};
    }
    return {discriminant == 0, true, -b / (2 * a), -b / (2 * a)};
}

void Store(float* res, float value)
{
    if (res) {
        *res = value;
    }
}

template <class L>
int TouchesBox(const ZmSphere& sphere, const ZmBbox& box)
{
    const SixFloats<L> corners(&box);
    const L center = L::Load4(&sphere);  // and the radius behind it
    const L outside = L::Max(L::Max(corners.second - center, center - corners.first), L::Splat(0));
    const L squares = outside * outside, radii = center * center;
    const L distance = (squares + squares.template Spread<1, 1, 1, 1>()) + squares.template Spread<2, 2, 2, 2>();
    return int(L::LessEqualMask(distance, radii.template Spread<3, 3, 3, 3>()) & 1);
}

}  // namespace

int ZmIntersect::RaySphere(const ZmRay& ray, const ZmSphere& sphere, ZmVector* inter1, ZmVector* inter2)
{
    const ZmVector unit = NormalizedExactly(ray.Direction), origin = ray.Origin, offset = sphere.Center - origin;
    const float middle = Dot(offset, unit);
    const float discriminant = sphere.Radius * sphere.Radius - (Dot(offset, offset) - middle * middle);
    if (discriminant > 0) {
        const float half = sqrtf(discriminant);
        *inter1 = origin + unit * (middle - half);
        *inter2 = origin + unit * (middle + half);
        return 2;
    }
    if (discriminant == 0) {
        *inter1 = origin + unit * middle;
        return 1;
    }
    return 0;
}

int ZmIntersect::SphereSphere(const ZmSphere& sphere1, const ZmVector& end1, const ZmSphere& sphere2,
                              const ZmVector& end2, float* t0, float* t1)
{
    const ZmVector between = sphere2.Center - sphere1.Center;
    const ZmVector motion = (end2 - sphere2.Center) - (end1 - sphere1.Center);
    const float reach = sphere1.Radius + sphere2.Radius, gap = Dot(between, between) - reach * reach;
    if (Dot(between, between) <= reach * reach) {
        Store(t0, 0);
        Store(t1, 0);
        return 1;
    }
    const Contacts contacts = SolveContacts(Dot(motion, motion), 2 * Dot(motion, between), gap);
    if (!contacts.known) {
        return 0;
    }
    Store(t0, contacts.first);
    Store(t1, contacts.last);
    return contacts.ever && contacts.first >= 0 && !(contacts.first > 1);
}

int ZmIntersect::SphereAABB(const ZmSphere& sphere, const ZmBbox& box)
{
    return UseSse() ? TouchesBox<SseLanes>(sphere, box) : TouchesBox<ScalarLanes>(sphere, box);
}
