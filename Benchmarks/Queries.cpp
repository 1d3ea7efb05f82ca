// Intersections, distances and the best-fit box, over pairs whose results cannot be predicted.

#include "Each.h"
#include "Families.h"
#include "Inputs.h"
#include "Records.h"

#include "ZmBestFitBBox.h"
#include "ZmDistance.h"
#include "ZmIntersect.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace bench {
namespace {

void Prepare(Work& w)
{
    w.src = &RandomQueries();
}

/// Contenders do not agree on an order of the axes.
void SortSizes(float* sizes)
{
    std::sort(sizes, sizes + 3);
}

constexpr Task kTasks[] = {
    {"Queries/box-box", 4, 0, Prepare, {kPairs}, {0.40}},
    {"Queries/sphere-box", 4, 0, Prepare, {kPairs}, {0.15}},
    {"Queries/ray-box", 4, 0, Prepare, {kPairs}, {0.25}},
    {"Queries/ray-sphere", 4, 0, Prepare, {kPairs}, {1.00}},
    {"Queries/moving-spheres", 4, 0, Prepare, {kPairs}, {1.00}},
    {"Queries/ray-triangle", 4, 0, Prepare, {kPairs}, {0.75}},
    {"Queries/oriented-boxes", 4, 0, Prepare, {kPairs}, {0.80}},
    {"Queries/frustum-planes-box", 4, 0, Prepare, {kPairs}, {1.00}},
    {"Queries/frustum-box", 4, 0, Prepare, {kPairs}, {}},
    {"Queries/segment-segment", 4, 0, Prepare, {kPairs}, {0.55}, 1e-3},
    {"Queries/best-fit-box", 4, 0, Prepare, {kCloudPoints}, {0.35}, 1e-3},
    {"Queries/best-fit-boxes", 12, 0, Prepare, {kSmallClouds}, {0.50}, 1e-3, SortSizes},
};

constexpr Task kInline[] = {
    {"Queries/frustum-planes-box", 4, 0, Prepare, {kPairs}, {}},
};

void BoxBox(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        return ZmIntersect::AABBAABB(Record<ZmBbox>(in.boxes[i]), Record<ZmBbox>(in.otherBoxes[j]));
    });
}

void SphereBox(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        return ZmIntersect::SphereAABB(Record<ZmSphere>(in.spheres[i]), Record<ZmBbox>(in.boxes[j]));
    });
}

void RayBox(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        return ZmIntersect::RayBox(Record<ZmRay>(in.rays[i]), Record<ZmBbox>(in.boxes[j]));
    });
}

void RaySphere(const Work& w)
{
    ZmVector points[2];
    EachPair(w, [&](const QueryInputs& in, int i, int j) {
        return ZmIntersect::RaySphere(Record<ZmRay>(in.rays[i]), Record<ZmSphere>(in.balls[j]), &points[0], &points[1]);
    });
}

void MovingSpheres(const Work& w)
{
    float t0 = 0, t1 = 0;
    EachPair(w, [&](const QueryInputs& in, int i, int j) {
        const float *a = in.movers[i], *b = in.balls[j];
        return ZmIntersect::SphereSphere(Record<ZmSphere>(a), Record<ZmVector>(a + 4), Record<ZmSphere>(b),
                                         Record<ZmVector>(b + 4), &t0, &t1);
    });
}

void RayTriangle(const Work& w)
{
    ZmVector point(0, 0, 0);
    float t = 0;
    EachPair(w, [&](const QueryInputs& in, int i, int j) {
        const ZmVector* triangle = &Record<ZmVector>(in.triangles[j]);
        return ZmIntersect::RayFace(Record<ZmRay>(in.faceRays[i]), triangle[0], triangle[1], triangle[2], triangle[3],
                                    point, t) != 0;
    });
}

void OrientedBoxes(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        return ZmIntersect::OBBOBB(Record<ZmOBB>(in.oriented[i]), Record<ZmOBB>(in.otherOriented[j]));
    });
}

void FrustumPlanesBox(const Work& w)
{
    const ZmFrustum frustum = FrustumOf(*static_cast<const QueryInputs*>(w.src));
    EachPair(w, [&](const QueryInputs& in, int i, int j) {
        return ZmIntersect::FrustumBox(frustum, Record<ZmBbox>(in.frustumBoxes[j]), Record<ZmMatrix>(in.matrices[i]));
    });
}

void FrustumOriented(const Work& w)
{
    const ZmFrustum frustum = FrustumOf(*static_cast<const QueryInputs*>(w.src));
    EachPair(w, [&](const QueryInputs& in, int i, int j) {
        return ZmIntersect::FrustumOBB(frustum, Record<ZmBbox>(in.frustumBoxes[j]), Record<ZmMatrix>(in.matrices[i]));
    });
}

void SegmentSegment(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        float s, t;
        return ZmDistance::SegmentSegmentSquareDistance(Record<ZmRay>(in.segments[i]),
                                                        Record<ZmRay>(in.otherSegments[j]), &s, &t);
    });
}

void StoreSizes(float* sizes, const ZmMatrix& box)
{
    for (int i = 0; i < 3; ++i) {
        sizes[i] = Length(ZmVector(box[i][0], box[i][1], box[i][2]));
    }
}

/// The sorted half-sizes, as far as the results have space; contenders do not agree on an order of the axes.
void BestFitBox(const Work& w)
{
    const QueryInputs& in = *static_cast<const QueryInputs*>(w.src);
    ZmMatrix box;
    ZmComputeBestFitBBox(reinterpret_cast<const unsigned char*>(in.cloud), 12, w.count, box, 0);
    float* sizes = static_cast<float*>(w.dst);
    StoreSizes(sizes, box);
    SortSizes(sizes);
}

unsigned char* SmallCloud(const Work& w, int i)
{
    const QueryInputs& in = *static_cast<const QueryInputs*>(w.src);
    return reinterpret_cast<unsigned char*>(const_cast<float*>(in.cloud[i * kSmallCloudPoints]));
}

void BestFitBoxes(const Work& w)
{
    static ZmPointCloud clouds[kSmallClouds];
    static ZmMatrix boxes[kSmallClouds];
    for (int i = 0; i < w.count; ++i) {
        clouds[i] = {{SmallCloud(w, i), 12}, kSmallCloudPoints};
    }
    ZmComputeBestFitBBoxes({boxes, sizeof(ZmMatrix)}, clouds, w.count, 0, nullptr);
    for (int i = 0; i < w.count; ++i) {
        StoreSizes(static_cast<float*>(w.dst) + 3 * i, boxes[i]);
    }
}

void BestFitBoxesSingly(const Work& w)
{
    for (int i = 0; i < w.count; ++i) {
        ZmMatrix box;
        ZmComputeBestFitBBox(SmallCloud(w, i), 12, kSmallCloudPoints, box, 0);
        StoreSizes(static_cast<float*>(w.dst) + 3 * i, box);
    }
}

constexpr Entry kEntries[] = {
    {"Queries/best-fit-boxes", BestFitBoxes},
    {"Queries/box-box", BoxBox},
    {"Queries/sphere-box", SphereBox},
    {"Queries/ray-box", RayBox},
    {"Queries/ray-sphere", RaySphere},
    {"Queries/moving-spheres", MovingSpheres},
    {"Queries/ray-triangle", RayTriangle},
    {"Queries/oriented-boxes", OrientedBoxes},
    {"Queries/frustum-planes-box", FrustumPlanesBox},
    {"Queries/frustum-box", FrustumOriented},
    {"Queries/segment-segment", SegmentSegment},
    {"Queries/best-fit-box", BestFitBox},
};

constexpr Entry kSingleEntries[] = {
    {"Queries/best-fit-boxes", BestFitBoxesSingly},
};

}  // namespace

constexpr Tasks kQueryTasks{kTasks};
constexpr Tasks kInlineQueryTasks{kInline};
constexpr Contender kQueries{"ZmMath", Role::OURS, kEntries};
constexpr Contender kQueriesSingly{"ZmMath singly", Role::PEER, kSingleEntries};

}  // namespace bench
