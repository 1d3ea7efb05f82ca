#include "Harness.h"

#include "QueryInputs.h"

#include "Inputs.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <random>

namespace bench {
namespace {

class Generator {
public:
    float Uniform(float low, float high) { return std::uniform_real_distribution<float>(low, high)(m_Engine); }
    void Vector(float* v, float range)
    {
        for (int i = 0; i < 3; ++i) {
            v[i] = Uniform(-range, range);
        }
    }

    /// Writes nine floats: an orthonormal frame.
    void Frame(float* axes)
    {
        std::normal_distribution<float> normal;
        float q[4], square = 0;
        for (float& f : q) {
            f = normal(m_Engine);
            square += f * f;
        }
        const float s = 2 / square, x = q[0], y = q[1], z = q[2], w = q[3];
        const float frame[9] = {1 - s * (y * y + z * z), s * (x * y - w * z),     s * (x * z + w * y),
                                s * (x * y + w * z),     1 - s * (x * x + z * z), s * (y * z - w * x),
                                s * (x * z - w * y),     s * (y * z + w * x),     1 - s * (x * x + y * y)};
        std::memcpy(axes, frame, sizeof(frame));
    }

private:
    std::mt19937 m_Engine{19630417};
};

void MakeBox(Generator& random, float* box, float range, float smallest, float largest)
{
    for (int i = 0; i < 3; ++i) {
        const float middle = random.Uniform(-range, range), half = random.Uniform(smallest, largest);
        box[i] = middle + half;
        box[3 + i] = middle - half;
    }
}

void MakeTriangle(Generator& random, float* t)
{
    for (int corner = 0; corner < 3; ++corner) {
        random.Vector(t + 3 * corner, 1);
    }
    const float a[3] = {t[3] - t[0], t[4] - t[1], t[5] - t[2]}, b[3] = {t[6] - t[0], t[7] - t[1], t[8] - t[2]};
    for (int i = 0; i < 3; ++i) {
        t[9 + i] = a[(i + 1) % 3] * b[(i + 2) % 3] - a[(i + 2) % 3] * b[(i + 1) % 3];
    }
}

void MakeOriented(Generator& random, float* box, float range)
{
    random.Vector(box, range);
    random.Frame(box + 3);
    for (int i = 0; i < 3; ++i) {
        box[12 + i] = random.Uniform(0.3f, 1.5f);
    }
}

void MakeSegment(Generator& random, float* segment)
{
    random.Vector(segment, 1);
    random.Vector(segment + 3, 1);
}

/// A ray from a random point to a point near the centre.
void MakeRay(Generator& random, float* ray, float range, float aim)
{
    random.Vector(ray, range);
    for (int i = 0; i < 3; ++i) {
        ray[3 + i] = random.Uniform(-aim, aim) - ray[i];
    }
}

/// Swaps the two halves of each record.
template <size_t Count, size_t Half>
void Exchange(float (&res)[Count][2 * Half], const float (&src)[Count][2 * Half])
{
    for (size_t i = 0; i < Count; ++i) {
        std::copy(src[i], src[i] + Half, res[i] + Half);
        std::copy(src[i] + Half, src[i] + 2 * Half, res[i]);
    }
}

void Widen(QueryInputs::Wide& res, const QueryInputs::Boxes& src)
{
    for (int i = 0; i < QueryInputs::kSeconds; ++i) {
        std::copy(src[i] + 3, src[i] + 6, res[i]);
        std::copy(src[i], src[i] + 3, res[i] + 4);
    }
}

void PutAxesFirst(float (&res)[QueryInputs::kSeconds][15], const float (&src)[QueryInputs::kSeconds][15])
{
    for (int i = 0; i < QueryInputs::kSeconds; ++i) {
        std::copy(src[i] + 3, src[i] + 12, res[i]);
        std::copy(src[i], src[i] + 3, res[i] + 9);
        std::copy(src[i] + 12, src[i] + 15, res[i] + 12);
    }
}

template <size_t Count, size_t Floats>
void Repeat(float (&array)[Count][Floats])
{
    std::memcpy(array[Count / 2], array[0], sizeof(array) / 2);
}

/// A view along Z from the origin, 90 degrees wide and high, with depths from 1 to 20.
void MakeFrustum(QueryInputs& in)
{
    const float h = std::sqrt(0.5f);
    const float planes[6][4] = {{h, 0, h, 0}, {-h, 0, h, 0}, {0, -h, h, 0},
                                {0, h, h, 0}, {0, 0, 1, -1}, {0, 0, -1, 20}};
    std::memcpy(in.frustumPlanes, planes, sizeof(planes));
    in.right[0] = in.up[1] = in.direction[2] = 1;
}

constexpr float kSmallest = 0.2f, kLargest = 1.2f;

/// Whether a box at this place can straddle one plane while it lies in front of a later one. Our test stops at the
/// first plane by contract; such places are left out.
bool DividesTheForms(const QueryInputs& in, const float* place)
{
    bool straddles = false, outside = false;
    for (const float(&plane)[4] : in.frustumPlanes) {
        float distance = plane[3], reach = 0;
        for (int i = 0; i < 3; ++i) {
            distance += plane[i] * place[i];
            reach += std::fabs(plane[i]);
        }
        outside |= distance < -reach * kSmallest;
        straddles |= std::fabs(distance) <= reach * kLargest;
    }
    return straddles && outside;
}

/// A sphere that moves from a point around the centre to a point nearer to it.
void MakeMover(Generator& random, float* mover, float range, float smallest, float largest)
{
    random.Vector(mover, range);
    mover[3] = random.Uniform(smallest, largest);
    random.Vector(mover + 4, 2);
}

/// A translation to a point around the frustum.
void MakePlace(Generator& random, const QueryInputs& in, float* matrix)
{
    for (int i = 0; i < 4; ++i) {
        matrix[5 * i] = 1;
    }
    float* place = matrix + 12;
    do {
        random.Vector(place, 13);
        place[2] = random.Uniform(0, 21);
    } while (DividesTheForms(in, place));
}

void MakePoint(Generator& random, float* point)
{
    constexpr float size[3] = {3, 1, 0.4f};
    for (int i = 0; i < 3; ++i) {
        point[i] = random.Uniform(-size[i], size[i]);
    }
    const float x = point[0], y = point[1];
    point[0] = 0.8f * x - 0.6f * y + 5;
    point[1] = 0.6f * x + 0.8f * y - 7;
}

std::unique_ptr<QueryInputs> Make()
{
    auto made = std::make_unique<QueryInputs>();
    QueryInputs& in = *made;
    Generator random;
    MakeFrustum(in);
    for (int i = 0; i < kPairs; ++i) {
        MakeBox(random, in.boxes[i], 2, 0.2f, 1.5f);
        MakeBox(random, in.otherBoxes[i], 2, 0.2f, 1.5f);
        random.Vector(in.spheres[i], 2.5f);
        in.spheres[i][3] = random.Uniform(0.3f, 1.8f);
        MakeRay(random, in.rays[i], 6, 2);
        MakeRay(random, in.faceRays[i], 1.5f, 0.15f);
        MakeTriangle(random, in.triangles[i]);
        MakeOriented(random, in.oriented[i], 1.5f);
        MakeOriented(random, in.otherOriented[i], 1.5f);
        MakeSegment(random, in.segments[i]);
        MakeSegment(random, in.otherSegments[i]);
        MakeBox(random, in.frustumBoxes[i], 0, kSmallest, kLargest);
        MakePlace(random, in, in.matrices[i]);
    }
    for (auto* boxes : {&in.boxes, &in.otherBoxes, &in.frustumBoxes}) {
        Repeat(*boxes);
    }
    Repeat(in.triangles);
    Repeat(in.oriented);
    Repeat(in.otherOriented);
    Repeat(in.otherSegments);
    Exchange<QueryInputs::kSeconds, 3>(in.boxesMinFirst, in.boxes);
    Exchange<QueryInputs::kSeconds, 3>(in.othersMinFirst, in.otherBoxes);
    Exchange<QueryInputs::kSeconds, 3>(in.frustumMinFirst, in.frustumBoxes);
    Widen(in.wideBoxes, in.boxes);
    Widen(in.wideOthers, in.otherBoxes);
    PutAxesFirst(in.orientedAxesFirst, in.oriented);
    PutAxesFirst(in.othersAxesFirst, in.otherOriented);
    for (float(&point)[3] : in.cloud) {
        MakePoint(random, point);
    }
    for (int i = 0; i < kPairs; ++i) {
        MakeMover(random, in.movers[i], 4, 0.3f, 0.8f);
        MakeMover(random, in.balls[i], 1.5f, 0.6f, 1.8f);
    }
    Repeat(in.balls);
    return made;
}

}  // namespace

QueryInputs& RandomQueries()
{
    static const std::unique_ptr<QueryInputs> inputs = Make();
    inputs->pass = 0;
    return *inputs;
}

}  // namespace bench
