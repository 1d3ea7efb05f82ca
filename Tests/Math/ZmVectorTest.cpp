#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

TEST(ZmVectorTest, ConstantsAreThere)
{
    EXPECT_EQ(ZmVector::axisX(), ZmVector(1, 0, 0));
    EXPECT_EQ(ZmVector::axisY(), ZmVector(0, 1, 0));
    EXPECT_EQ(ZmVector::axisZ(), ZmVector(0, 0, 1));
    EXPECT_EQ(ZmVector::axis0(), ZmVector(0, 0, 0));
    EXPECT_EQ(ZmVector::axis1(), ZmVector(1, 1, 1));
    EXPECT_EQ(Cross(ZmVector::axisX(), ZmVector::axisY()), ZmVector::axisZ());
}

TEST(ZmVectorTest, NormalizeIsExactOnTheScalarPathAndGoodToTwelveBitsOnTheOther)
{
    OnEachPath(100, [](Random& random) {
        for (const float range : {1e-12f, 1e-3f, 1.0f, 1e15f}) {
            const ZmVector v = random.Vector(range);
            ZmVector unit = v;
            unit.Normalize();
            const double length = sqrt(double(v.x) * v.x + double(v.y) * v.y + double(v.z) * v.z);
            for (int i = 0; i < 3; ++i) {
                ExpectClose(unit[i], v[i] / length, 4 + (OnVectorPath() ? kRsqrtError / kRounding : 0));
            }
        }
    });
}

TEST(ZmVectorTest, TinyVectorsStayFinite)
{
    // Their squares are denormal; the reciprocal of the root is not.
    OnEachPath(100, [](Random& random) {
        for (const float range : {1e-19f, 1e-20f, 1e-21f}) {
            ZmVector v = random.UnitVector() * range;
            v.Normalize();
            EXPECT_NEAR(Length(v), 1, 0.1) << range;
        }
    });
}

TEST(ZmVectorTest, NormalizingZeroGivesNonNumbers)
{
    OnEachPath(1, [](Random&) {
        ZmVector v(0, 0, 0);
        v.Normalize();
        EXPECT_TRUE(isnan(v.x) && isnan(v.y) && isnan(v.z));
    });
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
    {"an eighth of each", 2048, 2048, {0.5f, -0.70710678f, 0.5f}},
    {"only 14 bits count", short(0x4000 | 2048), short(-16384 + 2048), {0.5f, -0.70710678f, 0.5f}},
};

TEST(ZmVectorTest, CompressedDirectionsExpand)
{
    for (const auto& row : kCompressed) {
        SCOPED_TRACE(row.name);
        ZmVector v(9, 9, 9);
        EXPECT_EQ(&(v = ZmCompressedVector{row.xa, row.ya}), &v);
        ExpectNear(v, Row4(row.expected, 0), 1e-6);
    }
}

}  // namespace
