#include "Support/Paths.h"
#include "Support/Reference.h"

#include <algorithm>

namespace {

/// scale, then rotation, then translation.
ZmMatrix Composed(const ZmVector& pos, const ZmVector& scale, const ZmQuaternion& quat)
{
    const Matrix44d r = RotationOf(quat);
    ZmMatrix m({0, 0, 0}, {0, 0, 0}, {0, 0, 0}, pos);
    for (int i = 0; i < 9; ++i) {
        m[i / 3][i % 3] = float(scale[i / 3] * r[i / 3][i % 3].value);
    }
    return m;
}

// --- Quick form and interpolation ----------------------------------------------------------

/// The tolerance for a rotation computed through ZmVector::Normalize.
double QuickTolerance()
{
    return OnVectorPath() ? 4 * kRsqrtError : 8 * kRounding;
}

TEST(ZmDecompositionTest, TheQuickFormFindsWhatTheMatrixWasMadeOf)
{
    OnEachPath(20, [](Random& random) {
        for (const ZmVector& scale : {ZmVector(1, 1, 1), ZmVector(2, 3, -4), ZmVector(0.01f, 50, 1)}) {
            const ZmQuaternion rotation = random.Rotation();
            const ZmVector translation = random.Vector();
            const ZmMatrix m = Composed(translation, scale, rotation), copy = m;
            ZmQuaternion quat;
            ZmVector pos, found;
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

TEST(ZmDecompositionTest, RecomposeMatrixScalesThenTurnsThenMoves)
{
    OnEachPath(50, [](Random& random) {
        const ZmVector pos = random.Vector(), scale = random.Vector();
        const ZmQuaternion quat = random.Rotation();
        ZmMatrix m = random.Matrix();
        m.RecomposeMatrix(&pos, &scale, &quat);
        ExpectNear(m, Composed(pos, scale, quat), 40 * kRounding);
    });
}

TEST(ZmDecompositionTest, TheTranslationMayBeTheMatrixsOwn)
{
    ZmMatrix m({1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 2, 3});
    const ZmMatrix before = m;
    const ZmVector scale(1, 1, 1);
    const ZmQuaternion none;
    m.RecomposeMatrixEx(reinterpret_cast<const ZmVector*>(m[3]), &scale, &none, &none, 1);
    EXPECT_TRUE(m.Compare(before));
}

TEST(ZmDecompositionTest, InterpolationBlendsPositionScaleAndRotation)
{
    OnEachPath(20, [](Random& random) {
        const ZmVector axis = random.UnitVector();
        ZmQuaternion turns[4];
        for (int i = 0; i < 4; ++i) {
            turns[i].FromRotation(axis, 0.2f + 0.3f * float(i));
        }
        const ZmMatrix a = Composed({1, 2, 3}, {1, 2, 3}, turns[0]), b = Composed({7, 2, -3}, {4, 2, -3}, turns[3]);
        ZmMatrix m = random.Matrix(), inPlace = a;
        Zm3DInterpolateMatrix(0, m, a, b);
        ExpectNear(m, a, 6 * QuickTolerance());
        Zm3DInterpolateMatrix(1, m, a, b);
        ExpectNear(m, b, 6 * QuickTolerance());
        Zm3DInterpolateMatrix(1.0f / 3, m, a, b);
        ExpectNear(m, Composed({3, 2, 1}, {2, 2, 1}, turns[1]), 6 * QuickTolerance());
        Zm3DInterpolateMatrixNoScale(1.0f / 3, inPlace, inPlace, b);
        EXPECT_TRUE(inPlace.Compare(m));
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
Matrix44d Stretch(const ZmVector& k, const ZmQuaternion& u)
{
    Matrix44d diagonal;
    for (int i = 0; i < 3; ++i) {
        diagonal[i][i] = k[i];
    }
    return RotationOf(u) * diagonal * RotationOf(u).Transposed();
}

// The block is restored through the squares of two quaternions of floats.
constexpr double kFactorRounding = 16 * kRounding;

/// Expects that the parts are a rotation and a stretch without negative factors and together give m, or m with its
/// block negated if it is mirrored, up to rounding errors of the largest row.
void ExpectPolarParts(const ZmMatrix& m, const Parts& parts)
{
    double largest = 0;
    for (int i = 0; i < 3; ++i) {
        largest =
            std::max(largest, sqrt(double(m[i][0]) * m[i][0] + double(m[i][1]) * m[i][1] + double(m[i][2]) * m[i][2]));
    }
    for (const ZmQuaternion& q : {parts.quat, parts.uRot}) {
        EXPECT_NEAR(double(q.x) * q.x + double(q.y) * q.y + double(q.z) * q.z + double(q.w) * q.w, 1, 8 * kRounding);
    }
    EXPECT_TRUE(parts.scale.x >= 0 && parts.scale.y >= 0 && parts.scale.z >= 0);
    const Matrix44d block = Stretch(parts.scale, parts.uRot) * RotationOf(parts.quat);
    ZmMatrix again = m;
    again.RecomposeMatrixEx(&parts.pos, &parts.scale, &parts.quat, &parts.uRot, parts.sign);
    for (int i = 0; i < 9; ++i) {
        EXPECT_NEAR(parts.sign * block[i / 3][i % 3].value, m[i / 3][i % 3], kFactorRounding * largest) << i;
        EXPECT_NEAR(parts.sign * again[i / 3][i % 3], m[i / 3][i % 3], kFactorRounding * largest) << i;
    }
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(again[3][i], m[3][i]);
        EXPECT_EQ(again[i][3], m[i][3]);
    }
}

ZmMatrix Block3(float a, float b, float c, float d, float e, float f, float g, float h, float i)
{
    return {{a, b, c}, {d, e, f}, {g, h, i}, {1, 2, 3}};
}

TEST(ZmDecompositionTest, TheTotalFormGivesRotationAndStretch)
{
    OnEachPath(300, [](Random& random) {
        const ZmMatrix m = random.Affine();
        const Parts parts(m);
        EXPECT_EQ(parts.sign, Determinant3(m).value < 0 ? -1.0f : 1.0f);
        ExpectPolarParts(m, parts);
    });
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

TEST(ZmDecompositionTest, SingularAndExtremeBlocksAreDecomposedToo)
{
    for (const auto& row : kDegenerate) {
        SCOPED_TRACE(row.name);
        const Parts parts(row.m);
        EXPECT_EQ(parts.sign, row.sign);
        ExpectPolarParts(row.m, parts);
    }
}

TEST(ZmDecompositionTest, MixedMagnitudesComeBack)
{
    constexpr float scales[] = {1e-6f, 1e-3f, 1, 1e3f, 1e6f};
    OnEachPath(500, [&](Random& random) {
        ZmMatrix m = random.Affine(1);
        for (int i = 0; i < 9; ++i) {
            m[i / 3][i % 3] *= scales[random.Int(0, 4)];
        }
        ExpectPolarParts(m, Parts(m));
    });
}

/// The sign of the determinant, or 0 if double cannot resolve it. Products of two floats are exact.
float SignOfDeterminant(const ZmMatrix& m)
{
    double determinant = 0, terms = 0;
    for (int j = 0; j < 3; ++j) {
        const int k = (j + 1) % 3, l = (j + 2) % 3;
        const double term = m[2][j] * (double(m[0][k]) * m[1][l] - double(m[0][l]) * m[1][k]);
        determinant += term;
        terms += fabs(term);
    }
    return fabs(determinant) <= 0x1p-50 * terms ? 0.0f : determinant < 0 ? -1.0f : 1.0f;
}

TEST(ZmDecompositionTest, StretchesOfAnySizesAndSignsComeBackFromBetweenTwoRotations)
{
    // Rounding to floats leaves little of small values beside large ones: most blocks are nearly singular.
    constexpr float scales[] = {0,     1e-20f, 1e-16f, 1e-12f, 1e-10f, 1e-8f, 1e-7f, 1e-6f, 1e-4f,
                                1e-3f, 1e-2f,  0.1f,   1,      10,     1e2f,  1e3f,  1e4f,  1e6f};
    OnEachPath(7000, [&](Random& random) {
        Matrix44d diagonal;
        for (int i = 0; i < 3; ++i) {
            diagonal[i][i] = scales[random.Int(0, 17)] * (random.Int(0, 1) ? 1.0f : -1.0f);
        }
        const Matrix44d block = RotationOf(random.Rotation()) * diagonal * RotationOf(random.Rotation());
        ZmMatrix m = ZmMatrix::Identity();
        for (int i = 0; i < 9; ++i) {
            m[i / 3][i % 3] = float(block[i / 3][i % 3].value);
        }
        const Parts parts(m);
        ExpectPolarParts(m, parts);
        EXPECT_NE(parts.sign, -SignOfDeterminant(m));
    });
}

TEST(ZmDecompositionTest, ATinyStretchBesideTwoLargeOnesIsNoRotation)
{
    // The largest two leave a square norm of 3.15, as a rotation might, the third one is 1e-11.
    const ZmMatrix m = Block3(0x1.ba44b8p-4f, 0x1.918a4ap-4f, -0x1.758838p-1f, -0x1.abaee2p-2f, -0x1.5d6a26p-2f,
                              0x1.847b1ep+0f, -0x1.53e6dap-5f, -0x1.01d306p-5f, 0x1.142104p-4f);
    ExpectPolarParts(m, Parts(m));
}

constexpr double kNoTurn = 1e-5;  // far below the 8.7e-4 of a tenth of a degree

TEST(ZmDecompositionTest, StretchesThatAreEqualButForRoundingAreNotTurned)
{
    const ZmVector scales[] = {{1, 1, 1}, {0.3f, 0.3f, 0.3f}, {700, 700, -700}, {2, 2, 5}, {5, 1e-3f, 1e-3f}};
    OnEachPath(500, [&](Random& random) {
        ZmMatrix first, second, product;
        random.Rotation().ToMatrix(first);
        random.Rotation().ToMatrix(second);
        Zm3DMultiplyMatrix(product, first, second);
        for (const ZmVector& scale : scales) {
            ZmMatrix m = product;
            for (int i = 0; i < 9; ++i) {
                m[i / 3][i % 3] *= scale[i / 3];
            }
            const Parts parts(m);
            ExpectPolarParts(m, parts);
            ExpectNear(parts.uRot, 0, 0, 0, 1, kNoTurn);
        }
    });
}

void ExpectStretches(const Parts& parts, ZmVector expected)
{
    ZmVector found = parts.scale;
    std::sort(&found.x, &found.x + 3);
    std::sort(&expected.x, &expected.x + 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(found[i], expected[i], kFactorRounding * expected[i]);
    }
}

TEST(ZmDecompositionTest, BadlyScaledRotationsKeepTheirFactors)
{
    constexpr float scales[] = {1e-6f, 1, 1e6f};
    OnEachPath(100, [&](Random& random) {
        const ZmVector d = {scales[random.Int(0, 2)], scales[random.Int(0, 2)], scales[random.Int(0, 2)]};
        const ZmQuaternion rotation = random.Rotation();
        const ZmMatrix m = Composed({0, 0, 0}, d, rotation);
        const Parts parts(m);
        ExpectPolarParts(m, parts);
        ExpectSameRotation(parts.quat, rotation, 8 * kRounding);
        ExpectStretches(parts, d);  // they lie along the axes, so none is lost in the rounding of another
    });
}

TEST(ZmDecompositionTest, ALargeAxisDoesNotHideWhatTheSmallOnesDo)
{
    for (const float large : {1.0f, 1e3f, 1e6f}) {
        SCOPED_TRACE(large);
        // Stretches of 2e-6 and 4e-6 along the diagonals of the plane of Y and Z.
        const Parts parts(Block3(large, 0, 0, 0, 3e-6f, 1e-6f, 0, 1e-6f, 3e-6f));
        ExpectStretches(parts, {large, 2e-6f, 4e-6f});
        EXPECT_NEAR(Stretch(parts.scale, parts.uRot)[1][2].value, 1e-6, 1e-6 * kFactorRounding);
    }
}

TEST(ZmDecompositionTest, NonNumbersStayNonNumbers)
{
    for (const float bad : {NAN, INFINITY}) {
        const Parts parts(Block3(1, 2, 3, bad, 5, 6, 7, 8, 10));
        EXPECT_FALSE(isfinite(parts.quat.w) || isfinite(parts.scale.x)) << bad;
    }
}

TEST(ZmDecompositionTest, EachOutputMayBeLeftOut)
{
    const ZmMatrix m = Block3(1, 2, 3, -4, 5, 6, 7, 8, -2);
    const Parts all(m);
    EXPECT_EQ(all.sign, -1);
    for (int wanted = 0; wanted < 16; ++wanted) {
        SCOPED_TRACE(wanted);
        ZmQuaternion quat(9, 9, 9, 9), uRot = quat;
        ZmVector pos(9, 9, 9), scale = pos;
        const float sign = Zm3DDecomposeMatrixTotalPtr(m, wanted & 1 ? &quat : nullptr, wanted & 2 ? &pos : nullptr,
                                                       wanted & 4 ? &scale : nullptr, wanted & 8 ? &uRot : nullptr);
        EXPECT_EQ(sign, wanted & 13 ? all.sign : 1);
        EXPECT_EQ(quat.w, wanted & 1 ? all.quat.w : 9);
        EXPECT_EQ(pos.z, wanted & 2 ? 3 : 9);
        EXPECT_EQ(scale.x, wanted & 4 ? all.scale.x : 9);
        EXPECT_EQ(uRot.w, wanted & 8 ? all.uRot.w : 9);
    }
}

// --- Snuggling -----------------------------------------------------------------------

/// The largest |w| of q (x) p over the 24 rotations of the cube.
double BestWOverTheCube(const ZmQuaternion& q)
{
    double best = 0;
    for (int code = 0; code < 81; ++code) {  // components of -1, 0 and 1; one, two or four of them are a rotation
        const int x = code % 3 - 1, y = code / 3 % 3 - 1, z = code / 9 % 3 - 1, w = code / 27 - 1;
        const int square = x * x + y * y + z * z + w * w;
        if (square == 1 || square == 2 || square == 4) {
            best = std::max(best,
                            fabs(double(q.w) * w - double(q.x) * x - double(q.y) * y - double(q.z) * z) / sqrt(square));
        }
    }
    return best;
}

const struct {
    const char* name;
    ZmVector k;
    int freeAxis;  // 0 to 2: turns about it change nothing; 3: there is none; 4: no turn changes anything
} kStretches[] = {
    {"all different", {1, 2, 3}, 3}, {"one is zero", {0, 5, 4}, 3},   {"nearly equal", {2, 2.0001f, 5}, 3},
    {"x and y equal", {2, 2, 7}, 2}, {"y and z equal", {2, 7, 7}, 0}, {"z and x equal", {7, 2, 7}, 1},
    {"all equal", {3, 3, 3}, 4},
};

TEST(ZmDecompositionTest, SnugglingKeepsTheStretchAndLeavesTheSmallestRotation)
{
    OnEachPath(30, [](Random& random) {
        for (const auto& row : kStretches) {
            SCOPED_TRACE(row.name);
            ZmQuaternion q = random.Rotation();
            ZmVector k = row.k;
            const ZmQuaternion turned = Zm3DQuaternionMultiply(q, Zm3DQuaternionSnuggle(&q, &k));
            const Matrix44d before = Stretch(row.k, q), after = Stretch(k, turned);
            for (int i = 0; i < 9; ++i) {
                EXPECT_NEAR(after[i / 3][i % 3].value, before[i / 3][i % 3].value, 7 * 16 * kRounding);
            }
            double best = row.freeAxis == 4 ? 1 : BestWOverTheCube(q);
            for (int degree = 0; degree < 360 && row.freeAxis < 3; ++degree) {
                ZmVector axis(0, 0, 0);
                axis[row.freeAxis] = 1;
                ZmQuaternion turn;
                turn.FromRotation(axis, float(degree) * 0.01745329f);
                best = std::max(best, BestWOverTheCube(Zm3DQuaternionMultiply(q, turn)));
            }
            EXPECT_GE(fabs(turned.w), best - 8 * kRounding);
        }
    });
}

TEST(ZmDecompositionTest, TheTotalFormSnugglesItsStretchRotation)
{
    OnEachPath(100, [](Random& random) {
        const Parts parts(random.Affine());
        EXPECT_GE(fabs(parts.uRot.w), BestWOverTheCube(parts.uRot) - 8 * kRounding);
    });
}

}  // namespace
