#include "Support/Paths.h"
#include "Support/Random.h"
#include "Support/Reference.h"

#include <algorithm>

namespace {

// --- Quick form ----------------------------------------------------------------------

/// Of a rotation taken through ZmVector::Normalize.
double QuickTolerance()
{
    return OnVectorPath() ? 4 * kRsqrtError : 8 * kRounding;
}

/// scale, then rotation, then translation.
ZmMatrix Composed(const ZmVector& pos, const ZmVector& scale, const ZmQuaternion& quat)
{
    const Matrix44d rotation = RotationOf(quat);
    ZmMatrix m = ZmMatrix::Identity();
    for (int i = 0; i < 9; ++i) {
        m[i / 3][i % 3] = float(scale[i / 3] * rotation[i / 3][i % 3]);
    }
    for (int j = 0; j < 3; ++j) {
        m[3][j] = pos[j];
    }
    return m;
}

TEST(DecompositionTest, TheQuickFormFindsWhatTheMatrixWasMadeOf)
{
    OnEachPath([] {
        Random random(1);
        for (const ZmVector& scale : {ZmVector(1, 1, 1), ZmVector(2, 3, -4), ZmVector(0.01f, 50, 1)}) {
            const ZmQuaternion rotation = random.Rotation();
            const ZmVector translation = random.Vector();
            ZmQuaternion quat;
            ZmVector pos, found;
            const ZmMatrix m = Composed(translation, scale, rotation), copy = m;
            Zm3DDecomposeMatrix(m, quat, pos, found);
            EXPECT_EQ(pos, translation);
            ExpectSameRotation(quat, rotation, QuickTolerance());
            for (int i = 0; i < 3; ++i) {
                EXPECT_NEAR(found[i], scale[i], QuickTolerance() * fabs(scale[i]));
            }
            EXPECT_TRUE(m.Compare(copy));
        }
    });
}

TEST(DecompositionTest, RecomposeMatrixScalesThenTurnsThenMoves)
{
    OnEachPath([] {
        Random random(2);
        for (int round = 0; round < 50; ++round) {
            const ZmVector pos = random.Vector(), scale = random.Vector();
            const ZmQuaternion quat = random.Rotation();
            ZmMatrix m = random.Matrix();
            m.RecomposeMatrix(&pos, &scale, &quat);
            ExpectNear(m, Matrix44d(Composed(pos, scale, quat)), 10 * 4 * kRounding);
        }
    });
}

// --- Full form -----------------------------------------------------------------------

struct Parts {
    ZmQuaternion quat, uRot;
    ZmVector pos, scale;
    float sign;

    explicit Parts(const ZmMatrix& m) { sign = Zm3DDecomposeMatrixTotal(m, quat, pos, scale, uRot); }
};

/// U * diag(k) * U^T.
Matrix44d Stretch(const ZmVector& k, const Matrix44d& u)
{
    Matrix44d diagonal;
    for (int i = 0; i < 3; ++i) {
        diagonal[i][i] = k[i];
    }
    return u * diagonal * u.Transposed();
}

double LargestOf(const ZmMatrix& m)
{
    double largest = 0;
    for (int i = 0; i < 9; ++i) {
        largest = std::max(largest, fabs(double(m[i / 3][i % 3])));
    }
    return largest;
}

const double kFactorRounding = 16 * kRounding;  // two quaternions of floats, through whose squares the block comes back

/// That the parts are a rotation, a stretch without negative factors, and together m, or its block negated.
void ExpectPolarParts(const ZmMatrix& m, const Parts& parts)
{
    for (const ZmQuaternion& q : {parts.quat, parts.uRot}) {
        EXPECT_NEAR(double(q.x) * q.x + double(q.y) * q.y + double(q.z) * q.z + double(q.w) * q.w, 1, 8 * kRounding);
    }
    EXPECT_GE(parts.scale.x, 0);
    EXPECT_GE(parts.scale.y, 0);
    EXPECT_GE(parts.scale.z, 0);
    EXPECT_EQ(parts.pos, Row(m, 3));
    const Matrix44d block = Stretch(parts.scale, RotationOf(parts.uRot)) * RotationOf(parts.quat);
    for (int i = 0; i < 9; ++i) {
        EXPECT_NEAR(parts.sign * block[i / 3][i % 3], m[i / 3][i % 3], kFactorRounding * LargestOf(m))
            << i / 3 << i % 3;
    }
}

ZmMatrix Block3(float a, float b, float c, float d, float e, float f, float g, float h, float i)
{
    return {{a, b, c}, {d, e, f}, {g, h, i}, {1, 2, 3}};
}

TEST(DecompositionTest, TheTotalFormGivesRotationAndStretch)
{
    OnEachPath([] {
        Random random(3);
        for (int round = 0; round < 300; ++round) {
            SCOPED_TRACE(round);
            const ZmMatrix m = random.Affine();
            const Parts parts(m);
            EXPECT_EQ(parts.sign, Determinant3(Matrix44d(m)) < 0 ? -1.0f : 1.0f);
            ExpectPolarParts(m, parts);
        }
    });
}

TEST(DecompositionTest, RecomposingTheTotalFormGivesTheMatrixBackWithoutItsMirroring)
{
    Random random(4);
    for (int round = 0; round < 100; ++round) {
        const ZmMatrix m = random.Affine();
        const Parts parts(m);
        ZmMatrix again = random.Matrix();
        again.RecomposeMatrixEx(&parts.pos, &parts.scale, &parts.quat, &parts.uRot, parts.sign);
        Matrix44d expected(m);
        for (int i = 0; i < 9; ++i) {
            expected[i / 3][i % 3] *= parts.sign;
        }
        ExpectNear(again, expected, kFactorRounding * 10);
    }
}

const struct {
    const char* name;
    ZmMatrix m;
    float sign;
} kDegenerate[] = {
    {"identity", Block3(1, 0, 0, 0, 1, 0, 0, 0, 1), 1},
    {"half turn", Block3(-1, 0, 0, 0, 1, 0, 0, 0, -1), 1},
    {"mirror", Block3(1, 0, 0, 0, 1, 0, 0, 0, -1), -1},
    {"point mirror", Block3(-1, 0, 0, 0, -1, 0, 0, 0, -1), -1},
    {"rank 2", Block3(1, 2, 3, 4, 5, 6, 5, 7, 9), 1},
    {"rank 2, a row of zeros", Block3(1, 2, 3, 0, 0, 0, -4, 0, 2), 1},
    {"rank 2, a column of zeros", Block3(1, 2, 0, -7, 5, 0, 3, 3, 0), 1},
    {"rank 2, badly scaled", Block3(1e6f, 0, 0, 0, 1e-6f, 0, 0, 0, 0), 1},
    {"rank 1", Block3(2, 4, -6, -1, -2, 3, 3, 6, -9), 1},
    {"rank 1, one element", Block3(0, 0, 0, 0, 0, -3, 0, 0, 0), 1},
    {"rank 1, one row", Block3(0, 0, 0, 1, 2, 3, 0, 0, 0), 1},
    {"rank 0", Block3(0, 0, 0, 0, 0, 0, 0, 0, 0), 1},
    {"shear", Block3(1, 1000, 0, 0, 1, 0, 0, 0, 1), 1},
    {"next to nothing", Block3(1e-30f, 0, 2e-30f, 0, -1e-30f, 0, 0, 1e-30f, 3e-30f), -1},
    {"next to the largest", Block3(1e30f, 0, 2e30f, 0, 1e30f, 0, 0, 1e30f, 3e30f), 1},
};

TEST(DecompositionTest, SingularAndExtremeBlocksAreDecomposedToo)
{
    for (const auto& row : kDegenerate) {
        SCOPED_TRACE(row.name);
        const Parts parts(row.m);
        EXPECT_EQ(parts.sign, row.sign);
        ExpectPolarParts(row.m, parts);
    }
}

TEST(DecompositionTest, BadlyScaledRotationsKeepTheirFactors)
{
    const float scales[] = {1e-6f, 1, 1e6f};
    Random random(5);
    for (int code = 0; code < 27; ++code) {
        SCOPED_TRACE(code);
        const ZmVector d(scales[code % 3], scales[code / 3 % 3], scales[code / 9]);
        const ZmQuaternion rotation = random.Rotation();
        const ZmMatrix m = Composed({0, 0, 0}, d, rotation);
        const Parts parts(m);
        ExpectPolarParts(m, parts);
        EXPECT_EQ(parts.sign, 1);
        ExpectSameRotation(parts.quat, rotation, 8 * kRounding);
        // Here the stretch lies along the axes, and no factor is lost in the rounding of another.
        float found[3] = {parts.scale.x, parts.scale.y, parts.scale.z}, expected[3] = {d.x, d.y, d.z};
        std::sort(found, found + 3);
        std::sort(expected, expected + 3);
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(found[i], expected[i], 8 * kRounding * expected[i]);
        }
    }
}

TEST(DecompositionTest, ALargeAxisDoesNotHideWhatTheSmallOnesDo)
{
    for (const float large : {1.0f, 1e3f, 1e6f}) {
        SCOPED_TRACE(large);
        // Stretches of 2e-6 and 4e-6 along the diagonals of the plane of Y and Z.
        const ZmMatrix m = Block3(large, 0, 0, 0, 3e-6f, 1e-6f, 0, 1e-6f, 3e-6f);
        const Parts parts(m);
        float found[3] = {parts.scale.x, parts.scale.y, parts.scale.z};
        std::sort(found, found + 3);
        EXPECT_NEAR(found[0], 2e-6, 2e-6 * kFactorRounding);
        EXPECT_NEAR(found[1], 4e-6, 4e-6 * kFactorRounding);
        EXPECT_NEAR(found[2], large, large * kFactorRounding);
        ZmMatrix again;
        again.RecomposeMatrixEx(&parts.pos, &parts.scale, &parts.quat, &parts.uRot, parts.sign);
        EXPECT_NEAR(again[1][2], 1e-6, 1e-6 * kFactorRounding);
    }
}

TEST(DecompositionTest, MixedMagnitudesComeBack)
{
    Random random(6);
    for (int round = 0; round < 500; ++round) {
        SCOPED_TRACE(round);
        ZmMatrix m = random.Affine(1);
        for (int i = 0; i < 9; ++i) {
            const float scales[] = {1e-6f, 1e-3f, 1, 1e3f, 1e6f};
            m[i / 3][i % 3] *= scales[random.Int(0, 4)];
        }
        ExpectPolarParts(m, Parts(m));
    }
}

TEST(DecompositionTest, NonNumbersStayNonNumbers)
{
    for (const float bad : {NAN, INFINITY}) {
        const Parts parts(Block3(1, 2, 3, bad, 5, 6, 7, 8, 10));
        EXPECT_FALSE(isfinite(parts.quat.w)) << bad;
        EXPECT_FALSE(isfinite(parts.scale.x)) << bad;
    }
}

// --- Snuggling -----------------------------------------------------------------------

double MagnitudeOfW(const ZmQuaternion& a, const ZmQuaternion& b)
{
    return fabs(double(a.w) * b.w - double(a.x) * b.x - double(a.y) * b.y - double(a.z) * b.z);
}

/// The largest |w| of q (x) p over the 24 rotations of the cube.
double BestWOverTheCube(const ZmQuaternion& q)
{
    double best = 0;
    for (int code = 0; code < 81;
         ++code) {  // components of -1, 0 and 1: one, two or four of them stand for a rotation of the cube
        ZmQuaternion p(float(code % 3 - 1), float(code / 3 % 3 - 1), float(code / 9 % 3 - 1), float(code / 27 - 1));
        const float components = p.x * p.x + p.y * p.y + p.z * p.z + p.w * p.w;
        p.Normalize();
        if (components == 1 || components == 2 || components == 4) {
            best = std::max(best, MagnitudeOfW(q, p));
        }
    }
    return best;
}

void ExpectSameStretch(const ZmVector& k, const ZmQuaternion& u, const ZmVector& expectedK,
                       const ZmQuaternion& expectedU)
{
    const Matrix44d got = Stretch(k, RotationOf(u)), expected = Stretch(expectedK, RotationOf(expectedU));
    for (int i = 0; i < 9; ++i) {
        EXPECT_NEAR(got[i / 3][i % 3], expected[i / 3][i % 3], 10 * 16 * kRounding);
    }
}

const struct {
    const char* name;
    ZmVector k;
} kStretches[] = {
    {"all different", {1, 2, 3}},      {"one is zero", {0, 5, 4}},   {"x and y equal", {2, 2, 7}},
    {"y and z equal", {2, 7, 7}},      {"z and x equal", {7, 2, 7}}, {"all equal", {3, 3, 3}},
    {"nearly equal", {2, 2.0001f, 5}},
};

TEST(DecompositionTest, SnugglingKeepsTheStretchAndLeavesTheSmallestRotation)
{
    Random random(7);
    for (const auto& row : kStretches) {
        SCOPED_TRACE(row.name);
        for (int round = 0; round < 200; ++round) {
            const ZmQuaternion q = random.Rotation();
            ZmQuaternion argument = q;
            ZmVector k = row.k;
            const ZmQuaternion p = Zm3DQuaternionSnuggle(&argument, &k);
            const ZmQuaternion turned = Zm3DQuaternionMultiply(q, p);
            ExpectSameStretch(k, turned, row.k, q);
            EXPECT_GE(fabs(turned.w), BestWOverTheCube(q) - 8 * kRounding);
            EXPECT_TRUE(argument.x == q.x && argument.y == q.y && argument.z == q.z && argument.w == q.w);
        }
    }
}

TEST(DecompositionTest, EqualStretchesLeaveNoNeedlessRotation)
{
    Random random(8);
    for (int round = 0; round < 100; ++round) {
        ZmQuaternion q = random.Rotation();
        ZmVector three(4, 4, 4), two(4, 9, 4);
        ExpectSameRotation(Zm3DQuaternionMultiply(q, Zm3DQuaternionSnuggle(&q, &three)), {0, 0, 0, 1}, 8 * kRounding);
        const ZmQuaternion turned = Zm3DQuaternionMultiply(q, Zm3DQuaternionSnuggle(&q, &two));
        // No further turn about the third axis, in front of a turn from the cube, makes it smaller.
        for (int degree = 0; degree < 360; ++degree) {
            const float half = float(degree) * 0.0087266463f;
            EXPECT_GE(fabs(turned.w),
                      BestWOverTheCube(Zm3DQuaternionMultiply(q, {0, sinf(half), 0, cosf(half)})) - 8 * kRounding);
        }
    }
}

TEST(DecompositionTest, TotalFormsSnuggleTheirStretchRotation)
{
    Random random(9);
    for (int round = 0; round < 100; ++round) {
        const Parts parts(random.Affine());
        EXPECT_GE(fabs(parts.uRot.w), BestWOverTheCube(parts.uRot) - 8 * kRounding);
    }
}

// --- Optional outputs ------------------------------------------------------------------

TEST(DecompositionTest, EachOutputMayBeLeftOut)
{
    const ZmMatrix m = Block3(1, 2, 3, -4, 5, 6, 7, 8, -2);
    const Parts all(m);
    for (int wanted = 0; wanted < 16; ++wanted) {
        SCOPED_TRACE(wanted);
        ZmQuaternion quat(9, 9, 9, 9), uRot = quat;
        ZmVector pos(9, 9, 9), scale = pos;
        const float sign = Zm3DDecomposeMatrixTotalPtr(m, wanted & 1 ? &quat : nullptr, wanted & 2 ? &pos : nullptr,
                                                       wanted & 4 ? &scale : nullptr, wanted & 8 ? &uRot : nullptr);
        EXPECT_EQ(sign, wanted & 13 ? all.sign : 1);
        EXPECT_EQ(quat.w, wanted & 1 ? all.quat.w : 9);
        EXPECT_EQ(pos.z, wanted & 2 ? all.pos.z : 9);
        EXPECT_EQ(scale, wanted & 4 ? all.scale : ZmVector(9, 9, 9));
        EXPECT_EQ(uRot.w, wanted & 8 ? all.uRot.w : 9);
    }
    EXPECT_EQ(all.sign, -1);
}

// --- Interpolation ---------------------------------------------------------------------

TEST(DecompositionTest, InterpolationBlendsPositionScaleAndRotation)
{
    OnEachPath([] {
        Random random(10);
        const ZmVector axis = random.UnitVector();
        ZmQuaternion turn0, turn1, middle;
        turn0.FromRotation(axis, 0.2f);
        turn1.FromRotation(axis, 1.4f);
        middle.FromRotation(axis, 0.5f);
        const ZmMatrix a = Composed({1, 2, 3}, {1, 2, 3}, turn0), b = Composed({5, 2, -1}, {3, 2, -1}, turn1);
        const Matrix44d expected(Composed({2, 2, 2}, {1.5f, 2, 2}, middle));
        ZmMatrix m = random.Matrix(), inPlace = a;
        Zm3DInterpolateMatrix(0.25f, m, a, b);
        ExpectNear(m, expected, 3 * 2 * QuickTolerance());
        Zm3DInterpolateMatrixNoScale(0.25f, inPlace, inPlace, b);
        EXPECT_TRUE(inPlace.Compare(m));
    });
}

TEST(DecompositionTest, InterpolationEndsAtItsMatrices)
{
    OnEachPath([] {
        Random random(11);
        const ZmQuaternion from = random.Rotation(), to = random.Rotation();
        const ZmMatrix a = Composed({1, 2, 3}, {1, 2, 3}, from), b = Composed({-5, 2, 0}, {2, 1, 0.5f}, to);
        ZmMatrix m;
        Zm3DInterpolateMatrix(0, m, a, b);
        ExpectNear(m, Matrix44d(a), 3 * 2 * QuickTolerance());
        Zm3DInterpolateMatrix(1, m, a, b);
        ExpectNear(m, Matrix44d(b), 3 * 2 * QuickTolerance());
    });
}

}  // namespace
