#include "ZmCulling.h"

#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Strided.h"
#include "ZmBuilders.h"
#include "ZmIntersect.h"

#include <functional>

namespace {

typedef std::function<int(const ZmStridedData& elements, int count, uint8_t* hits, uint32_t* indices)> Many;

/// Compares the results for all counts up to 20 with those of `one`, which tests a single element.
template <class T, class One>
void ExpectAsOneByOne(const std::vector<T>& all, One one, const Many& many)
{
    for (size_t count = 0; count <= all.size(); ++count) {
        const std::vector<T> elements(all.begin(), all.begin() + ptrdiff_t(count));
        std::vector<uint8_t> expected(count + 1, 9), hits = expected;
        std::vector<uint32_t> expectedIndices, indices(count, 77);
        for (size_t i = 0; i < count; ++i) {
            expected[i] = one(elements[i]) != 0;
            if (expected[i]) {
                expectedIndices.push_back(uint32_t(i));
            }
        }
        const int found = int(expectedIndices.size());
        Strided<T> strided(elements, unsigned(sizeof(T) + count % 7));
        EXPECT_EQ(many(strided.Data(), int(count), hits.data(), indices.data()), found);
        EXPECT_EQ(many(strided.Data(), int(count), nullptr, nullptr), found);
        indices.resize(size_t(found));
        EXPECT_EQ(hits, expected);
        EXPECT_EQ(indices, expectedIndices);
    }
}

std::vector<ZmBbox> RandomBoxes(Random& random)
{
    std::vector<ZmBbox> boxes;
    for (int i = 0; i < 20; ++i) {
        const ZmVector min = random.Vector(5), size = {random.Float(0, 3), random.Float(0, 3), random.Float(0, 3)};
        boxes.push_back({min + size, min});
    }
    return boxes;
}

ZmFrustum RandomFrustum(Random& random)
{
    ZmMatrix m;
    random.Rotation().ToMatrix(m);
    return {random.Vector(2),
            {m[0][0], m[0][1], m[0][2]},
            {m[1][0], m[1][1], m[1][2]},
            {m[2][0], m[2][1], m[2][2]},
            0.5f,
            6,
            1.2f,
            0.8f};
}

TEST(ZmCullingTest, TheFrustumKeepsWhatIsNotWhollyInFrontOfAPlane)
{
    OnEachPath(20, [](Random& random) {
        const ZmFrustum frustum = RandomFrustum(random);
        const auto keepsBox = [&](const ZmBbox& box) {
            for (const ZmPlane& plane : frustum.Planes) {
                bool front = true;
                for (int corner = 0; corner < 8; ++corner) {
                    const ZmVector at((corner & 1) ? box.Max.x : box.Min.x, (corner & 2) ? box.Max.y : box.Min.y,
                                      (corner & 4) ? box.Max.z : box.Min.z);
                    front = front && Dot(plane.Normal, at) + plane.D > 0;
                }
                if (front) {
                    return false;
                }
            }
            return true;
        };
        ExpectAsOneByOne(RandomBoxes(random), keepsBox, [&](auto... rest) { return ZmCullBoxes(frustum, rest...); });

        const auto keepsSphere = [&](const ZmSphere& sphere) {
            for (const ZmPlane& plane : frustum.Planes) {
                if (Dot(plane.Normal, sphere.Center) + plane.D > sphere.Radius) {
                    return false;
                }
            }
            return true;
        };
        std::vector<ZmSphere> spheres;
        for (int i = 0; i < 20; ++i) {
            spheres.push_back({random.Vector(5), random.Float(0, 2)});
        }
        ExpectAsOneByOne(spheres, keepsSphere, [&](auto... rest) { return ZmCullSpheres(frustum, rest...); });
    });
}

TEST(ZmCullingTest, RaysBoxesAndSpheresMeetTheSameBoxesAsOneByOne)
{
    OnEachPath(20, [](Random& random) {
        const std::vector<ZmBbox> boxes = RandomBoxes(random);
        ZmRay ray;
        ray.Origin = random.Vector(5);
        ray.Direction = boxes[3].Min - ray.Origin;
        ExpectAsOneByOne(
            boxes, [&](const ZmBbox& box) { return ZmIntersect::RayBox(ray, box); },
            [&](auto... rest) { return ZmRayBoxes(ray, rest...); });

        const ZmBbox box = {boxes[5].Min, boxes[5].Min - ZmVector(2, 2, 2)};  // touches the fifth
        ExpectAsOneByOne(
            boxes, [&](const ZmBbox& other) { return ZmIntersect::AABBAABB(box, other); },
            [&](auto... rest) { return ZmBoxBoxes(box, rest...); });

        const ZmSphere sphere = {random.Vector(4), random.Float(0, 3)};
        ExpectAsOneByOne(
            boxes, [&](const ZmBbox& other) { return ZmIntersect::SphereAABB(sphere, other); },
            [&](auto... rest) { return ZmSphereBoxes(sphere, rest...); });
    });
}

TEST(ZmCullingTest, BoxesAreTransformedWithTheBitsOfTransformFrom)
{
    OnEachPath(3, [](Random& random) {
        const ZmMatrix m = random.Affine();
        const std::vector<ZmBbox> all = RandomBoxes(random);
        for (size_t count = 0; count <= all.size(); ++count) {
            const std::vector<ZmBbox> boxes(all.begin(), all.begin() + ptrdiff_t(count));
            Strided<ZmBbox> source(boxes, 28), separate(boxes, 31);
            ZmTransformBoxes(separate.Data(), source.Data(), m, int(count));
            ZmTransformBoxes(source.Data(), source.Data(), m, int(count));
            for (size_t i = 0; i < count; ++i) {
                ZmBbox expected;
                expected.TransformFrom(boxes[i], m);
                const ZmBbox found = separate[i], inPlace = source[i];
                EXPECT_EQ(memcmp(&found, &expected, sizeof(ZmBbox)), 0) << i;
                EXPECT_EQ(memcmp(&inPlace, &expected, sizeof(ZmBbox)), 0) << i;
            }
            EXPECT_TRUE(separate.GapsAreIntact() && source.GapsAreIntact());
        }
    });
}

TEST(ZmCullingTest, BoundsOfPointsHaveTheBitsOfTheInlineForms)
{
    const struct {
        const char* name;
        float scale;
        ZmVector centre;
        bool onSphere, odd;
    } rows[] = {
        {"random", 3, {0, 0, 0}, false, false},     {"far away", 3, {9000, -700, 0.1f}, false, false},
        {"on a sphere", 3, {1, 2, 3}, true, false}, {"tiny", 1e-22f, {0, 0, 0}, false, false},
        {"huge", 1e25f, {0, 0, 0}, false, false},   {"zeros and NaNs", 3, {0, 0, 0}, false, true},
    };
    for (const auto& row : rows) {
        OnEachPath(100, [&](Random& random) {
            SCOPED_TRACE(row.name);
            const int count = random.Int(0, 40);
            const float oddities[] = {0.0f, -0.0f, nanf(""), 1};
            std::vector<ZmVector> points;
            for (int i = 0; i < count; ++i) {
                ZmVector p = random.Vector(1);
                if (row.onSphere) {  // whose box has the same centre
                    p = i < 6 ? ZmVector(0, 0, 0) : random.UnitVector();
                    p[i % 3] = i < 6 ? (i < 3 ? 1.0f : -1.0f) : p[i % 3];
                }
                p = p * row.scale + row.centre;
                for (int axis = 0; axis < 3 && row.odd; ++axis) {
                    p[axis] = oddities[random.Int(0, 3)] * (axis == 0 ? 1.0f : axis == 1 ? -1.0f : 0.0f);
                }
                points.push_back(p);
            }
            Strided<ZmVector> strided(points, unsigned(random.Int(12, 17)));
            EXPECT_TRUE(SameBits(ZmBoxOfPoints(strided.Data(), count), ZmBoxFromPoints(strided.Data(), count)));
            EXPECT_TRUE(SameBits(ZmSphereOfPoints(strided.Data(), count), ZmSphereFromPoints(strided.Data(), count)));
        });
    }
}

}  // namespace
