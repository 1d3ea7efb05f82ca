#include "Support/Paths.h"
#include "Support/Random.h"
#include "Support/Reference.h"

namespace {

TEST(VectorTest, ConstantsAreThere)
{
    EXPECT_EQ(ZmVector::axisX(), ZmVector(1, 0, 0));
    EXPECT_EQ(ZmVector::axisY(), ZmVector(0, 1, 0));
    EXPECT_EQ(ZmVector::axisZ(), ZmVector(0, 0, 1));
    EXPECT_EQ(ZmVector::axis0(), ZmVector(0, 0, 0));
    EXPECT_EQ(ZmVector::axis1(), ZmVector(1, 1, 1));
    EXPECT_EQ(Cross(ZmVector::axisX(), ZmVector::axisY()), ZmVector::axisZ());
}

TEST(VectorTest, NormalizeIsExactOnTheScalarPathAndGoodToTwelveBitsOnTheOther)
{
    OnEachPath([] {
        Random random(1);
        const double tolerance = OnVectorPath() ? kRsqrtError + 4 * kRounding : 4 * kRounding;
        for (const float range : {1e-12f, 1e-3f, 1.0f, 1e15f}) {
            for (int round = 0; round < 200; ++round) {
                const ZmVector v = random.Vector(range);
                ZmVector unit = v;
                unit.Normalize();
                const double length = sqrt(double(v.x) * v.x + double(v.y) * v.y + double(v.z) * v.z);
                for (int i = 0; i < 3; ++i) {
                    EXPECT_NEAR(unit[i], v[i] / length, tolerance * fabs(v[i] / length));
                }
            }
        }
    });
}

TEST(VectorTest, NormalizingZeroGivesNonNumbers)
{
    OnEachPath([] {
        ZmVector v(0, 0, 0);
        v.Normalize();
        EXPECT_TRUE(isnan(v.x) && isnan(v.y) && isnan(v.z));
    });
}

TEST(VectorTest, LengthIsThatOfTheVector)
{
    EXPECT_EQ(Length({2, -3, 6}), 7);
    EXPECT_EQ(Length({0, 0, 0}), 0);
}

const struct {
    const char* name;
    short xa, ya;
    ZmVector expected;
} kCompressed[] = {
    {"zero looks along Z", 0, 0, {0, 0, 1}},
    {"a quarter of heading looks along X", 0, 4096, {1, 0, 0}},
    {"a quarter of elevation looks along minus Y", 4096, 0, {0, -1, 0}},
    {"minus a quarter of elevation looks along Y", -4096, 0, {0, 1, 0}},
    {"half a turn of heading", 0, 8192, {0, 0, -1}},
    {"an eighth of each", 2048, 2048, {0.5f, -0.70710678f, 0.5f}},
    {"a twelfth of elevation", 1365, 0, {0, -0.49989f, 0.86609f}},
    {"only 14 bits count", short(0x4000 | 2048), short(-16384 + 2048), {0.5f, -0.70710678f, 0.5f}},
};

TEST(VectorTest, CompressedDirectionsExpand)
{
    for (const auto& row : kCompressed) {
        SCOPED_TRACE(row.name);
        ZmVector v(9, 9, 9);
        EXPECT_EQ(&(v = ZmCompressedVector{row.xa, row.ya}), &v);
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(v[i], row.expected[i], 2e-6);
        }
    }
}

}  // namespace
