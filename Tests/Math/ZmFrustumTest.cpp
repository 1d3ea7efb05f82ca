#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

TEST(ZmFrustumTest, TheDefaultLooksAlongZ)
{
    const ZmFrustum f;
    EXPECT_TRUE(f.Origin == ZmVector(0, 0, 0) && f.Right == ZmVector(1, 0, 0));
    EXPECT_TRUE(f.Up == ZmVector(0, 1, 0) && f.Direction == ZmVector(0, 0, 1));
    EXPECT_TRUE(f.HalfWidth == 1 && f.HalfHeight == 1 && f.NearDistance == 1 && f.FarDistance == 2);
    EXPECT_TRUE(f.FarNearRatio == 2 && f.WidthFactor == -4 && f.HeightFactor == -4);
    EXPECT_TRUE(f.Planes[4].Normal == ZmVector(0, 0, -1) && f.Planes[4].D == 1);
    EXPECT_TRUE(f.Planes[5].Normal == ZmVector(0, 0, 1) && f.Planes[5].D == -2);
}

TEST(ZmFrustumTest, TheAngleIsTheWholeHorizontalOne)
{
    const ZmFrustum f({1, 2, 3}, {0, 1, 0}, {0, 0, 1}, {1, 0, 0}, 0.5f, 10, 1.2f, 0.75f);
    EXPECT_NEAR(f.HalfWidth, sin(0.6) / cos(0.6) * 0.5, 2 * kRounding);
    EXPECT_NEAR(f.HalfHeight, 0.75 * f.HalfWidth, kRounding);
    EXPECT_EQ(f.FarNearRatio, 20);
    EXPECT_NEAR(f.WidthFactor, -20.0 * f.HalfWidth, 16 * kRounding);
    EXPECT_NEAR(f.HeightFactor, -20.0 * f.HalfHeight, 16 * kRounding);
}

/// A random frustum; `handedness` -1 mirrors the right axis.
ZmFrustum RandomFrustum(Random& random, float handedness)
{
    ZmMatrix axes;
    random.Rotation().ToMatrix(axes);
    const ZmVector right = Row(axes, 0) * handedness, origin = random.Vector();
    return {origin, right, Row(axes, 1), Row(axes, 2), 1.5f, 7.5f, random.Float(0.5f, 2), 0.8f};
}

TEST(ZmFrustumTest, CornersGoRoundTheNearRectangleAndThenTheFarOne)
{
    OnEachPath(20, [](Random& random) {
        const ZmFrustum f = RandomFrustum(random, 1);
        const float x[] = {-1, 1, 1, -1}, y[] = {-1, -1, 1, 1};
        ZmVector corners[8];
        f.ComputeVertices(corners);
        for (int i = 0; i < 8; ++i) {
            const float ratio = i < 4 ? 1 : 5;
            const ZmVector fromEye = corners[i] - f.Origin;
            EXPECT_NEAR(Dot(fromEye, f.Direction), f.NearDistance * ratio, 1e-4);
            EXPECT_NEAR(Dot(fromEye, f.Right), x[i % 4] * f.HalfWidth * ratio, 1e-4);
            EXPECT_NEAR(Dot(fromEye, f.Up), y[i % 4] * f.HalfHeight * ratio, 1e-4);
        }
    });
}

TEST(ZmFrustumTest, PlanesHoldTheirCornersAndPointOutwardsInEitherHandedness)
{
    OnEachPath(20, [](Random& random) {
        constexpr unsigned onPlane[6] = {0x99, 0x66, 0xCC, 0x33, 0x0F, 0xF0};  // the corners on each, a bit each
        const ZmFrustum f = RandomFrustum(random, random.Int(0, 1) ? 1.0f : -1.0f);
        ZmVector corners[8];
        f.ComputeVertices(corners);
        for (int i = 0; i < 48; ++i) {
            SCOPED_TRACE(testing::Message() << "plane " << i / 8 << ", corner " << i % 8);
            const ZmPlane& plane = f.Planes[i / 8];
            const float distance = Dot(plane.Normal, corners[i % 8]) + plane.D;
            const bool on = (onPlane[i / 8] >> i % 8 & 1) != 0;
            EXPECT_NEAR(distance, on ? 0 : -200, on ? 2e-5 : 199.9);
            EXPECT_NEAR(Length(plane.Normal), 1, 4 * kRounding);
        }
    });
}

/// Expects that transforming the frustum moves its corners as m does and keeps their order.
void ExpectTransformedCorners(ZmFrustum f, const ZmMatrix& m)
{
    ZmVector before[8], after[8];
    f.ComputeVertices(before);
    f.Transform(m);
    f.ComputeVertices(after);
    for (int i = 0; i < 8; ++i) {
        ExpectNear(after[i], Row4(before[i], 1) * m, 2e-4);
    }
    for (const ZmVector& axis : {f.Right, f.Up, f.Direction}) {
        EXPECT_NEAR(Length(axis), 1, 4 * kRounding);
    }
    EXPECT_NEAR(Dot(f.Planes[5].Normal, after[6]) + f.Planes[5].D, 0, 1e-3);
}

TEST(ZmFrustumTest, TransformMovesTurnsAndScalesTheCorners)
{
    OnEachPath(1, [](Random& random) {
        for (const float scale : {1.0f, 0.25f, 3.0f, -2.0f}) {
            const ZmVector pos = random.Vector(), uniform(scale, scale, scale);
            const ZmQuaternion turn = random.Rotation();
            ZmMatrix m;
            m.RecomposeMatrix(&pos, &uniform, &turn);
            ExpectTransformedCorners(RandomFrustum(random, 1), m);
        }
        ExpectTransformedCorners(ZmFrustum(), ZmMatrix({2, 0, 0}, {0, 0.5f, 0}, {0, 0, 3}, {1, 2, 3}));
    });
}

TEST(ZmFrustumTest, AnAxisThatVanishesStaysZero)
{
    ZmFrustum frustum;
    frustum.Transform(ZmMatrix({0, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}));
    EXPECT_EQ(frustum.Right, ZmVector(0, 0, 0));
    EXPECT_EQ(frustum.HalfWidth, 0);
}

}  // namespace
