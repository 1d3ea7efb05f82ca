#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

#include <math.h>

namespace {

constexpr int kRounds = 300;
constexpr float kQuarter = 1.57079633f;
/// One and a half units in the last place of 1.
constexpr double kExact = 3 * kRounding;

// --- Constants ---------------------------------------------------------------------------

constexpr ZmMatrix kMoved = ZmScaling({2, 4, 8}) * ZmTranslation({1, 2, 3});

static_assert(TransformPoint({1, 1, 1}, kMoved) == ZmVector(3, 6, 11));
static_assert(Zm3DInverseAffine(kMoved) * kMoved == ZmScaling(1));
static_assert(Zm3DInverse4(kMoved) == Zm3DInverseAffine(kMoved));
static_assert(ZmRotationX(0) == ZmScaling(1) && ZmRotationX(1)[1][2] > 0.84f);
static_assert(ZmRotationOfUnit({1, 0, 0, 0}) == ZmScaling({1, -1, -1}));
static_assert(ZmTransform({1, 2, 3}, ZmQuaternion(), {2, 4, 8}) == kMoved);
static_assert(ZmPerspective(1, 1, 1, 2)[2][3] == 1 && ZmOrthographic(2, 2, 0, 1) == ZmScaling(1));
static_assert(Union({{1, 2, 3}, {0, 0, 0}}, {{2, 1, 1}, {-1, 0, 1}}).Max == ZmVector(2, 2, 3));
static_assert(Intersection({{1, 2, 3}, {0, 0, 0}}, {{2, 1, 1}, {-1, 0, 1}}).Min == ZmVector(0, 0, 1));
static_assert(IsEmpty(ZmEmptyBox()) && !Contains(ZmEmptyBox(), ZmVector(0, 0, 0)));
static_assert(Contains(ZmSphere{{1, 0, 0}, 2}, ZmVector(3, 0, 0)) && !Contains(ZmSphere{{1, 0, 0}, 2}, {3, 0.1f, 0}));

// --- Rotations ---------------------------------------------------------------------------

const struct {
    const char* name;
    ZmMatrix quarterTurn;
    ZmVector axis, from, to;
} kSenses[] = {
    {"about X, Y goes to Z", ZmRotationX(kQuarter), {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
    {"about Y, Z goes to X", ZmRotationY(kQuarter), {0, 1, 0}, {0, 0, 1}, {1, 0, 0}},
    {"about Z, X goes to Y", ZmRotationZ(kQuarter), {0, 0, 1}, {1, 0, 0}, {0, 1, 0}},
};

TEST(ZmBuildersTest, AllRotationsTurnInOneSense)
{
    for (const auto& row : kSenses) {
        SCOPED_TRACE(row.name);
        const Row4 to(row.to, 0);
        ExpectNear(TransformPoint(row.from, row.quarterTurn), to, 2 * kRounding);
        ExpectNear(TransformPoint(row.from, ZmRotation(row.axis * 5, kQuarter)), to, 2 * kRounding);
        ExpectNear(Rotate(ZmRotationQuaternion(row.axis * 5, kQuarter), row.from), to, 4 * kRounding);
        ExpectNear(Rotate(row.from, row.axis, -kQuarter), to, 4 * kRounding);  // the older sense
    }
}

TEST(ZmBuildersTest, RotationsAboutTheAxesHaveTheElementsOfTheEulerAngles)
{
    OnEachPath(kRounds, [](Random& random) {
        const float angle = random.Float(random.Int(0, 1) ? 4.0f : 90000.0f);
        ZmMatrix x, y, z;
        Zm3DMatrixFromEulerAngles(x, angle, 0, 0);
        Zm3DMatrixFromEulerAngles(y, 0, angle, 0);
        Zm3DMatrixFromEulerAngles(z, 0, 0, angle);
        EXPECT_EQ(ZmRotationX(angle), x);
        EXPECT_EQ(ZmRotationY(angle), y);
        EXPECT_EQ(ZmRotationZ(angle), z);

        const ZmVector angles = random.Vector(4);
        ZmMatrix all;
        Zm3DMatrixFromEulerAngles(all, angles.x, angles.y, angles.z);
        ExpectNear(ZmRotationX(angles.x) * ZmRotationY(angles.y) * ZmRotationZ(angles.z), all, 8 * kRounding);
    });
}

TEST(ZmBuildersTest, LargeAnglesComeFromTheLibrary)
{
    for (const float angle : {1e5f, -123456.7f, 3e9f, 3e38f}) {
        ZmMatrix expected;
        Zm3DMatrixFromEulerAngles(expected, 0, 0, angle);
        EXPECT_EQ(ZmRotationZ(angle), expected) << angle;
    }
    EXPECT_TRUE(isnan(ZmRotationZ(INFINITY)[0][0]));
}

/// The rotation about a unit axis by Rodrigues' formula: Y to Z about X.
Matrix44d AxisTurn(const ZmVector& axis, double angle)
{
    const double length = sqrt(double(axis.x) * axis.x + double(axis.y) * axis.y + double(axis.z) * axis.z);
    const double u[3] = {axis.x / length, axis.y / length, axis.z / length}, s = sin(angle), c = cos(angle);
    Matrix44d m;
    for (int i = 0; i < 3; ++i) {
        const int j = (i + 1) % 3, k = (i + 2) % 3;
        m[i][i] = c + (1 - c) * u[i] * u[i];
        m[i][j] = (1 - c) * u[i] * u[j] + s * u[k];
        m[i][k] = (1 - c) * u[i] * u[k] - s * u[j];
    }
    return m;
}

TEST(ZmBuildersTest, RotationsAboutAnyAxisAreExact)
{
    if (!SystemSinesAreExact()) {
        GTEST_SKIP() << "the C library's sines are inexact here";
    }
    OnEachPath(kRounds, [](Random& random) {
        const ZmVector axis = random.Vector();
        const float angle = random.Float(7);
        ExpectNear(ZmRotation(axis, angle), AxisTurn(axis, angle), kExact);
        ZmMatrix older;
        Zm3DMatrixFromRotation(older, axis, -angle);
        ExpectNear(older, AxisTurn(axis, angle), OnVectorPath() ? 6 * kRsqrtError : 16 * kRounding);
        const ZmQuaternion q = ZmRotationQuaternion(axis, angle);
        ExpectNear(ZmRotation(q), AxisTurn(axis, angle), 6 * kRounding);
        ExpectNear(ZmRotationOfUnit(q), AxisTurn(axis, angle), 6 * kRounding);
    });
}

TEST(ZmBuildersTest, TransformsHaveTheBitsOfTheLibrary)
{
    OnEachPath(kRounds, [](Random& random) {
        const ZmQuaternion q(random.Float(2), random.Float(2), random.Float(2), random.Float(2));
        const ZmVector position = random.Vector(), scale = random.Vector();
        ZmMatrix rotation, transform;
        q.ToMatrix(rotation);
        transform.RecomposeMatrix(&position, &scale, &q);
        EXPECT_TRUE(SameBits(ZmRotation(q), rotation));
        EXPECT_TRUE(SameBits(ZmTransform(position, q, scale), transform));
        EXPECT_TRUE(SameBits(ZmRotationQuaternion(rotation), Zm3DQuaternionFromMatrix(rotation)));
    });
    ZmMatrix rotation;
    const ZmQuaternion half(0, -1, 0, 0);  // zeros of both signs
    half.ToMatrix(rotation);
    EXPECT_TRUE(SameBits(ZmRotation(half), rotation));
}

// --- Cameras -----------------------------------------------------------------------------

const struct {
    const char* name;
    uint32_t flags;
    double nearDepth, farDepth;
    float ahead;  // the Z along which the camera looks
} kViews[] = {
    {"default", ZMVIEW_DEFAULT, 0, 1, 1},
    {"right-handed", ZMVIEW_RIGHT_HANDED, 0, 1, -1},
    {"from -1", ZMVIEW_DEPTH_FROM_MINUS, -1, 1, 1},
    {"right-handed from -1", ZMVIEW_RIGHT_HANDED | ZMVIEW_DEPTH_FROM_MINUS, -1, 1, -1},
    {"reversed", ZMVIEW_DEPTH_REVERSED, 1, 0, 1},
    {"right-handed reversed", ZMVIEW_RIGHT_HANDED | ZMVIEW_DEPTH_REVERSED, 1, 0, -1},
    {"reversed to -1", ZMVIEW_DEPTH_REVERSED | ZMVIEW_DEPTH_FROM_MINUS, 1, -1, 1},
};

/// A point after the division.
void ExpectProjected(const ZmVector& p, const ZmMatrix& m, double x, double y, double z, double tolerance = 1e-5)
{
    const ZmVector4 clip = ZmVector4(p.x, p.y, p.z, 1) * m;
    EXPECT_NEAR(clip.x / clip.w, x, tolerance);
    EXPECT_NEAR(clip.y / clip.w, y, tolerance);
    EXPECT_NEAR(clip.z / clip.w, z, tolerance);
    EXPECT_GT(clip.w, 0);
}

TEST(ZmBuildersTest, PerspectiveTakesThePyramidToClipSpace)
{
    // A quarter turn of field: y reaches as far as the distance, x twice as far.
    for (const auto& row : kViews) {
        SCOPED_TRACE(row.name);
        const ZmMatrix m = ZmPerspective(kQuarter, 2, 0.5f, 8, row.flags);
        ExpectProjected({1, 0.5f, 0.5f * row.ahead}, m, 1, 1, row.nearDepth);
        ExpectProjected({-16, -8, 8 * row.ahead}, m, -1, -1, row.farDepth);
        ExpectProjected({0, 2, 4 * row.ahead}, m, 0, 0.5,
                        row.nearDepth + (row.farDepth - row.nearDepth) * (1 / 0.5 - 1 / 4.0) / (1 / 0.5 - 1 / 8.0));
        const ZmMatrix endless = ZmPerspective(kQuarter, 2, 0.5f, INFINITY, row.flags);
        ExpectProjected({1, 0.5f, 0.5f * row.ahead}, endless, 1, 1, row.nearDepth);
        ExpectProjected({0, 0, 1e9f * row.ahead}, endless, 0, 0, row.farDepth);
        EXPECT_EQ(m[2][3], row.ahead);
    }
}

TEST(ZmBuildersTest, OrthographicTakesTheBoxToClipSpace)
{
    for (const auto& row : kViews) {
        SCOPED_TRACE(row.name);
        const ZmMatrix m = ZmOrthographic(-1, 3, 2, 10, 0.5f, 8, row.flags);
        ExpectProjected({3, 10, 0.5f * row.ahead}, m, 1, 1, row.nearDepth);
        ExpectProjected({-1, 2, 8 * row.ahead}, m, -1, -1, row.farDepth);
        ExpectProjected({1, 6, 4.25f * row.ahead}, m, 0, 0, 0.5 * (row.nearDepth + row.farDepth));
        EXPECT_EQ(ZmOrthographic(4, 8, 0.5f, 8, row.flags), ZmOrthographic(-2, 2, -4, 4, 0.5f, 8, row.flags));
    }
}

TEST(ZmBuildersTest, CamerasLookAtTheirTarget)
{
    Random random(1);
    for (int round = 0; round < kRounds; ++round) {
        for (const auto& row : kViews) {
            SCOPED_TRACE(row.name);
            const ZmVector eye = random.Vector(), target = random.Vector(), up = random.UnitVector();
            const ZmMatrix view = ZmLookAt(eye, target, up, row.flags);
            const float distance = Distance(eye, target), size = 20 * (1 + distance);
            ExpectNear(TransformPoint(eye, view), Row4(0, 0, 0, 0), size * kRounding);
            ExpectNear(TransformPoint(target, view), Row4(0, 0, row.ahead * distance, 0), size * kRounding);
            // `up` stays in the upper half of the picture, and the axes keep their orientation.
            const ZmVector upwards = TransformDirection(up, view);
            EXPECT_NEAR(upwards.x, 0, 8 * kRounding);
            EXPECT_GT(upwards.y, 0);
            EXPECT_NEAR(Determinant3(Matrix44d(view)).value, 1, 8 * kRounding);
        }
    }
    EXPECT_EQ(ZmLookAt({0, 0, 0}, {0, 0, 5}), ZmScaling(1));
    EXPECT_TRUE(isnan(ZmLookAt({0, 0, 0}, {0, 5, 0})[0][0]));
}

TEST(ZmBuildersTest, TheProjectionOfAFrustumHasItsPlanes)
{
    const ZmFrustum frustum({1, 2, 3}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, 0.5f, 20, 1.2f, 0.75f);
    const ZmMatrix m =
        ZmLookAt(frustum.Origin, frustum.Origin + frustum.Direction, frustum.Up) * ZmPerspective(frustum);
    ZmVector corners[8];
    frustum.ComputeVertices(corners);
    for (int i = 0; i < 8; ++i) {
        SCOPED_TRACE(i);
        ExpectProjected(corners[i], m, i % 4 == 1 || i % 4 == 2 ? 1 : -1, i % 4 >= 2 ? 1 : -1, i / 4, 1e-4);
    }
    const float vertical = 2 * atanf(tanf(0.6f) * 0.75f);
    ExpectNear(ZmPerspective(vertical, 1 / 0.75f, 0.5f, 20), ZmPerspective(frustum), 1e-5);
}

// --- Inverses ----------------------------------------------------------------------------

TEST(ZmBuildersTest, AffineInversesHaveTheBitsOfTheLibrary)
{
    OnEachPath(kRounds, [](Random& random) {
        const ZmMatrix m = random.Affine();
        ZmMatrix expected;
        Zm3DInverseMatrix(expected, m);
        EXPECT_TRUE(SameBits(Zm3DInverseAffine(m), expected));
    });
}

const struct {
    const char* name;
    ZmMatrix m;
    bool affineHasNone, fullHasNone;
} kSingular[] = {
    {"zero", ZmScaling(0), true, true},
    {"flat", ZmScaling({1, 0, 1}), true, true},
    {"dependent rows", {{1, 2, 3}, {4, 5, 6}, {5, 7, 9}, {1, 1, 1}}, true, true},
    {"nearly dependent rows", {{1e9f, 1, 1}, {1e9f, 1, 1}, {0, 0, 1}, {0, 0, 0}}, true, true},
    {"small but regular", ZmScaling(1e-10f), false, false},
};

TEST(ZmBuildersTest, SingularMatricesGiveNonNumbers)
{
    for (const auto& row : kSingular) {
        SCOPED_TRACE(row.name);
        ZmMatrix untouched = ZmScaling(7);
        Zm3DInverseMatrix(untouched, row.m);
        EXPECT_EQ(untouched == ZmScaling(7), row.affineHasNone);
        const ZmMatrix affine = Zm3DInverseAffine(row.m), full = Zm3DInverse4(row.m);
        for (int i = 0; i < 16; ++i) {
            EXPECT_EQ(isnan(affine[i / 4][i % 4]), row.affineHasNone);
            EXPECT_EQ(isnan(full[i / 4][i % 4]), row.fullHasNone);
        }
    }
}

TEST(ZmBuildersTest, InversesUndoTheirMatrix)
{
    Random random(2);
    for (int round = 0; round < kRounds; ++round) {
        const ZmMatrix full = random.Matrix(1), inverse = Zm3DInverse4(full);
        const Matrix44d product = Matrix44d(full) * Matrix44d(inverse);
        for (int i = 0; i < 16; ++i) {
            // Each element of the inverse is rounded once.
            EXPECT_NEAR(product[i / 4][i % 4].value, i / 4 == i % 4, 2 * kRounding * product[i / 4][i % 4].size);
        }
        const ZmMatrix rigid = ZmTransform(random.Vector(), random.Rotation());
        ExpectNear(rigid * Zm3DInverseRigid(rigid), ZmScaling(1), 100 * kRounding);
    }
    const ZmMatrix projection = ZmPerspective(1, 1.5f, 0.5f, 100);
    ExpectNear(projection * Zm3DInverse4(projection), ZmScaling(1), 1e-5);
}

// --- Boxes and spheres -------------------------------------------------------------------

TEST(ZmBuildersTest, BoxesAndSpheresHoldTheirPoints)
{
    OnEachPath(30, [](Random& random) {
        const int count = random.Int(1, 40);
        const unsigned stride = unsigned(random.Int(12, 40));  // any alignment
        const float range = random.Int(0, 1) ? 10.0f : random.Int(0, 1) ? 1e15f : 1e-43f;
        Block bytes = RandomBytes(random, SpanOf(count, stride, 12));
        std::vector<ZmVector> points;
        for (int i = 0; i < count; ++i) {
            points.push_back(random.Vector(range));
            memcpy(&bytes[size_t(i) * stride], &points.back(), 12);
        }
        const ZmBbox box = ZmBoxFromPoints(points.data(), count);
        const ZmSphere sphere = ZmSphereFromPoints(points.data(), count);
        ZmVector lowest = points[0], highest = points[0];
        for (const ZmVector& p : points) {
            EXPECT_TRUE(Contains(box, p) && Contains(sphere, p));
            for (int i = 0; i < 3; ++i) {
                lowest[i] = fminf(lowest[i], p[i]);
                highest[i] = fmaxf(highest[i], p[i]);
            }
        }
        EXPECT_TRUE(box.Min == lowest && box.Max == highest);
        const double halfDiagonal = 0.5 * sqrt(zm::SquareDistanceOf(box.Min, box.Max));
        EXPECT_LE(double(sphere.Radius), halfDiagonal * (1 + 8 * kRounding) + 2e-45);
        const ZmStridedData strided(bytes.data(), stride);
        EXPECT_TRUE(SameBits(ZmBoxFromPoints(strided, count), box));
        EXPECT_TRUE(SameBits(ZmSphereFromPoints(strided, count), sphere));
    });
}

TEST(ZmBuildersTest, BoxesCombine)
{
    const ZmBbox a = {{4, 4, 4}, {0, 0, 0}}, b = {{6, 3, 5}, {2, -1, 1}}, apart = {{9, 9, 9}, {8, 8, 8}};
    ZmBbox both = a;
    Extend(both, b);
    EXPECT_TRUE(both.Max == ZmVector(6, 4, 5) && both.Min == ZmVector(0, -1, 0));
    EXPECT_TRUE(SameBits(Union(a, b), both));
    const ZmBbox common = Intersection(a, b);
    EXPECT_TRUE(common.Max == ZmVector(4, 3, 4) && common.Min == ZmVector(2, 0, 1));
    EXPECT_TRUE(IsEmpty(Intersection(a, apart)));
    EXPECT_TRUE(Contains(a, common) && Contains(both, a) && !Contains(a, b) && !Contains(common, a));
    EXPECT_TRUE(Contains(a, a.Max) && Contains(a, a.Min) && !Contains(a, ZmVector(4, 4, 4.001f)));
}

TEST(ZmBuildersTest, NoPointsAndNonNumbersAreHarmless)
{
    EXPECT_TRUE(IsEmpty(ZmBoxFromPoints(nullptr, 0)));
    for (const int count : {0, 1}) {
        const ZmVector none(NAN, NAN, NAN);
        const ZmSphere sphere = ZmSphereFromPoints(&none, count);
        EXPECT_TRUE(sphere.Center == ZmVector(0, 0, 0) && sphere.Radius == 0);
    }
    const ZmVector points[] = {{1, 2, 3}, {NAN, 5, 1}, {-1, NAN, NAN}};
    const ZmBbox box = ZmBoxFromPoints(points, 3);
    EXPECT_TRUE(box.Max == ZmVector(1, 5, 3) && box.Min == ZmVector(-1, 2, 1));
}

}  // namespace
