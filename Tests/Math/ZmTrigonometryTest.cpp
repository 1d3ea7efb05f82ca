#include "ZmTrigonometry.h"

#include "Support/Paths.h"
#include "Support/Reference.h"
#include "Support/SinesAndCosines.h"
#include "Support/Strided.h"

#include <limits.h>

namespace {

constexpr double kStep = 0.00038349521f;  // the table's own step, a float
constexpr double kTableError = 0x1p-24;   // of one float near 1: half its last place, and a little for near-ties
constexpr double kStepError = 4e-7;       // of a whole turn of steps against the true angle

using Many = void (*)(const ZmStridedData&, const ZmStridedData&, int);

void AnglesOverOne(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    float one = 1;
    ZmAtan2Strided(res, src, {&one, 0}, count);
}

float AngleOverOne(float x)
{
    return ZmAtan2(x, 1);
}

struct Value {
    float x, result;
};

// The arguments whose results lie nearest to halfway between two floats, by the distance; a double cannot tell the side
// of the first.
const std::vector<Value> kSines = {
    {0x1.487e0cp+103f, 0x1.287508p-2f}, {0x1.33333p+13f, -0x1.63f4bap-2f}, {0x1.95f654p+44f, -0x1.fcf42ep-1f},
    {0x1.524856p+80f, -0x1.ff5702p-1f}, {0x1.e35bc6p+7f, 0x1.c5b4acp-3f},  {0x1.411b04p+63f, 0x1.58ed1p-1f},
    {0x1.b559b6p+117f, 0x1.b50776p-2f}, {0x1.8d9d8p+73f, -0x1.d32b7ap-1f},
};
const std::vector<Value> kCosines = {
    {0x1.2b9622p+67f, 0x1.f0285ep-1f},  {0x1.887814p+51f, 0x1.84bec4p-1f}, {0x1.3170fp+63f, 0x1.fe2976p-1f},
    {0x1.96344ep+117f, 0x1.f8a9b4p-1f}, {0x1.4555p+51f, 0x1.115d7ep-1f},   {0x1.119ae6p+115f, 0x1.f3176ap-1f},
    {0x1.e072ecp+67f, 0x1.b598acp-2f},  {0x1.20ffccp-7f, 0x1.fffae8p-1f},
};
const std::vector<Value> kTangents = {
    {0x1.fa6748p+64f, 0x1.a0d918p+0f},  {0x1.b0e75cp+59f, 0x1.4d7fdap-2f},  {0x1.02e9bap+2f, 0x1.453662p+0f},
    {0x1.5ce84cp+124f, 0x1.958db6p-1f}, {0x1.296846p+111f, 0x1.d06d3p+0f},  {0x1.78b08cp+11f, 0x1.c9f41cp-1f},
    {0x1.b0a5fp+47f, -0x1.81c3b4p+0f},  {0x1.9b44d6p+112f, 0x1.105668p+0f},
};
const std::vector<Value> kArcsines = {
    {0x1.107434p-1f, 0x1.1f4b64p-1f},  {0x1.cbf43cp-4f, 0x1.cced1cp-4f},
    {0x1.0f2b38p-5f, 0x1.0f37e6p-5f},  {0x1.137f0cp-5f, 0x1.138c5ap-5f},
    {0x1.d12edp-12f, 0x1.d12ed2p-12f}, {0x1.2f02f8p-5f, 0x1.2f14aap-5f},
    {0x1.6fe272p-2f, 0x1.784bf4p-2f},  {1, 0x1.921fb6p+0f},
};
const std::vector<Value> kArccosines = {
    {0x1.04c444p-12f, 0x1.920f6ap+0f},
    {0x1.110b46p-26f, 0x1.921fb6p+0f},
    {-0x1.80d99ap-7f, 0x1.95216cp+0f},
    {0x1.145f36p-6f, 0x1.8dce2cp+0f},
    {-0x1.3abeeap-10f, 0x1.926e66p+0f},
    {0x1.fa5036p-9f, 0x1.91228ep+0f},
    {-0x1.cd19a2p-3f, 0x1.cc4282p+0f},
    {-1, 0x1.921fb6p+1f},
    {1, 0},
};
const std::vector<Value> kArctangents = {
    {0x1.1ad646p-4f, 0x1.1a6386p-4f},   {0x1.ac6ff4p-10f, 0x1.ac6fdcp-10f}, {0x1.f83792p-9f, 0x1.f836fp-9f},
    {0x1.e00a3p+25f, 0x1.921fb6p+0f},   {0x1.6afe3ap+1f, 0x1.3b5652p+0f},   {0x1.e00a2ep+25f, 0x1.921fb4p+0f},
    {0x1.4f7476p-11f, 0x1.4f7474p-11f}, {INFINITY, 0x1.921fb6p+0f},
};

const struct Function {
    const char* name;
    float (*single)(float);
    Many many;
    double (*reference)(double);
    float range;      // of arguments
    bool keepsZeros;  // with their sign
    const std::vector<Value>& values;
} kFunctions[] = {
    {"sine", ZmSin, ZmSinStrided, sin, INFINITY, true, kSines},
    {"cosine", ZmCos, ZmCosStrided, cos, INFINITY, false, kCosines},
    {"sine of both", SineOfBoth, SinesOfBoth, sin, INFINITY, true, kSines},
    {"cosine of both", CosineOfBoth, CosinesOfBoth, cos, INFINITY, false, kCosines},
    {"tangent", ZmTan, ZmTanStrided, tan, INFINITY, true, kTangents},
    {"arc sine", ZmAsin, ZmAsinStrided, asin, 1, true, kArcsines},
    {"arc cosine", ZmAcos, ZmAcosStrided, acos, 1, false, kArccosines},
    {"arc tangent", ZmAtan, ZmAtanStrided, atan, INFINITY, true, kArctangents},
    {"arc tangent of two", AngleOverOne, AnglesOverOne, atan, INFINITY, true, kArctangents},
};

uint32_t BitsOf(float f)
{
    uint32_t bits;
    memcpy(&bits, &f, sizeof(bits));
    return isnan(f) ? 0x7FC00000 : bits;
}

float FloatOf(uint32_t bits)
{
    float f;
    memcpy(&f, &bits, sizeof(f));
    return f;
}

TEST(ZmTrigonometryTest, ResultsNextToHalfwayAreRoundedToTheNearerFloat)
{
    OnEachPath(1, [](Random&) {
        for (const Function& f : kFunctions) {
            for (const Value& value : f.values) {
                float x[4] = {value.x, value.x, value.x, value.x}, res[4] = {};
                f.many({res, 4}, {x, 4}, 4);
                EXPECT_EQ(BitsOf(f.single(value.x)), BitsOf(value.result)) << f.name << " of " << value.x;
                EXPECT_EQ(BitsOf(res[2]), BitsOf(value.result)) << f.name << "s of " << value.x;
            }
        }
    });
}

TEST(ZmTrigonometryTest, ResultsAreThoseOfTheSystemRoundedOnce)
{
    if (!SystemSinesAreExactForAll()) {
        GTEST_SKIP() << "the C library's functions are inexact here";
    }
    for (const Function& f : kFunctions) {
        for (uint64_t bits = 0; bits < 0xFFFFFFFF; bits += 99991) {
            const float x = FloatOf(uint32_t(bits));
            const double expected = f.reference(double(x));
            if (float(expected * (1 - 0x1p-40)) == float(expected * (1 + 0x1p-40))) {
                ASSERT_EQ(BitsOf(f.single(x)), BitsOf(float(expected))) << f.name << " of " << x;
            }
        }
    }
}

TEST(ZmTrigonometryTest, ArraysHaveTheBitsOfSingleCalls)
{
    OnEachPath(3, [](Random& random) {
        for (const Function& f : kFunctions) {
            for (const int count : {-1, 0, 1, 3, 4, 5, 11}) {
                for (const unsigned stride : {4u, 8u, 13u}) {
                    std::vector<float> in(size_t(count < 0 ? 0 : count));
                    for (float& x : in) {
                        x = random.Int(0, 2) == 0 ? FloatOf(random.Bits()) : random.Float(f.range == 1 ? 1.0f : 9.0f);
                    }
                    Strided<float> src(in, stride), res(in, 12);
                    f.many(res.Data(), src.Data(), count);
                    f.many(src.Data(), src.Data(), count);
                    for (size_t i = 0; i < in.size(); ++i) {
                        ASSERT_EQ(BitsOf(res[i]), BitsOf(f.single(in[i]))) << f.name << " of " << in[i];
                        ASSERT_EQ(BitsOf(src[i]), BitsOf(res[i])) << f.name << " in place";
                    }
                    ASSERT_TRUE(res.GapsAreIntact() && src.GapsAreIntact()) << f.name;
                }
            }
        }
    });
}

TEST(ZmTrigonometryTest, WhatHasNoResultGivesNaNAndZerosKeepTheirSign)
{
    OnEachPath(1, [](Random&) {
        for (const Function& f : kFunctions) {
            const bool isArcTangent = f.reference == static_cast<double (*)(double)>(atan);
            for (const float x : {NAN, isArcTangent ? NAN : INFINITY, f.range == 1 ? -1.0000001f : NAN}) {
                EXPECT_TRUE(isnan(f.single(x))) << f.name << " of " << x;
            }
            for (const float x : {0.0f, -0.0f, -0x1p-149f}) {
                EXPECT_TRUE(!f.keepsZeros || BitsOf(f.single(x)) == BitsOf(x)) << f.name << " of " << x;
            }
        }
    });
}

constexpr float kTiny = 0x1p-149f, kPi = 0x1.921fb6p+1f;

const struct {
    float y, x, angle;
} kDirections[] = {
    {0, 0, 0},
    {0, -0.0f, kPi},
    {-0.0f, -0.0f, -kPi},
    {0, 1, 0},
    {-0.0f, 1, -0.0f},
    {0, -kTiny, kPi},
    {kTiny, 0, kPi / 2},
    {-3, -0.0f, -kPi / 2},
    {2, 2, kPi / 4},
    {-1, -1, -0x1.2d97c8p+1f},
    {INFINITY, INFINITY, kPi / 4},
    {INFINITY, -INFINITY, 0x1.2d97c8p+1f},
    {-INFINITY, 0x1p127f, -kPi / 2},
    {0x1p127f, INFINITY, 0},
    {-1, INFINITY, -0.0f},
    {1, -INFINITY, kPi},
    {NAN, 1, NAN},
    {INFINITY, NAN, NAN},
    {0, NAN, NAN},
    // A ratio halfway between two floats, whose angle is a little less.
    {3 * kTiny, 2, kTiny},
    {-3 * kTiny, 2, -kTiny},
    {kTiny, 2, 0},
    {5 * kTiny, 2, 2 * kTiny},
    {kTiny, -2, kPi},
    // A double cannot tell on which side of halfway these lie.
    {-0x1.1912a2p+28f, -0x1.e122c8p+15f, -0x1.922d66p+0f},
    {0x1.f41c66p+25f, -0x1.ff8778p+25f, 0x1.2f099cp+1f},
    {0x1.3a824p+20f, -0x1.c5dc76p+21f, 0x1.676e62p+1f},
    {-0x1.96de5p+24f, -0x1.313492p+28f, -0x1.877bdp+1f},
    {-0x1.7edcf4p+22f, 0x1.b90e4p+27f, -0x1.bc569p-6f},
    {0x1.946d34p+15f, 0x1.4097eap+20f, 0x1.42c676p-5f},
    {-0x1.6df642p+27f, -0x1.34d922p+21f, -0x1.957fdap+0f},
    {0x1.697a28p+24f, -0x1.cb9bbap+20f, 0x1.a66cbep+0f},

};

TEST(ZmTrigonometryTest, DirectionsHaveTheNearestAngleInTheirQuadrant)
{
    OnEachPath(1, [](Random&) {
        for (const auto& row : kDirections) {
            const float y[] = {1, row.y, 2, -3, 4}, x[] = {1, row.x, 2, -3, 4};
            Strided<float> rises({y, y + 5}, 8), runs({x, x + 5}, 4), res({y, y + 5}, 4);
            ZmAtan2Strided(res.Data(), rises.Data(), runs.Data(), 5);
            EXPECT_EQ(BitsOf(ZmAtan2(row.y, row.x)), BitsOf(row.angle)) << row.y << ", " << row.x;
            EXPECT_EQ(BitsOf(res[1]), BitsOf(row.angle)) << "many " << row.y << ", " << row.x;
            EXPECT_EQ(BitsOf(res[3]), BitsOf(-0x1.2d97c8p+1f));
        }
    });
}

TEST(ZmTrigonometryTest, TheTableHoldsTheSinesOfItsSteps)
{
    if (!SystemSinesAreExact()) {
        GTEST_SKIP() << "the C library's sines are inexact here";
    }
    for (int i = 0; i < 16384; ++i) {
        ASSERT_NEAR(Tsin(i), sin(i * kStep), kTableError) << i;
        ASSERT_NEAR(Tcos(i), cos(i * 3.14159265358979 / 8192), kStepError) << i;
        ASSERT_EQ(Tcos(i), Tsin(i + 4096)) << i;
    }
    EXPECT_TRUE(Tcos(0) == 1 && Tsin(4096) == 1 && Tsin(0) == 0);
}

TEST(ZmTrigonometryTest, WholeTurnsDropOut)
{
    for (const int i : {0, 1, 4095, 4096, 10000, 16383}) {
        for (const int turns : {-3, -1, 1, 50}) {
            EXPECT_EQ(Tsin(i + turns * 16384), Tsin(i)) << i;
            EXPECT_EQ(Tcos(i + turns * 16384), Tcos(i)) << i;
        }
    }
    EXPECT_EQ(Tsin(INT_MAX), Tsin(16383));
    EXPECT_EQ(Tcos(INT_MIN), Tcos(0));
}

const struct {
    float radians;
    int angle;
} kAngles[] = {
    {0, 0},           {1.57079633f, 4096}, {-1.57079633f, -4096}, {62.8318531f, 163840},  // not wrapped
    {0.00019f, 0},                                                                        // 0.4954
    {0.000192f, 1},                                                                       // 0.5007
    {-0.000192f, -1}, {1e30f, INT_MIN},
};

TEST(ZmTrigonometryTest, RadiansBecomeTheNearestAngle)
{
    for (const auto& row : kAngles) {
        EXPECT_EQ(radToAngle(row.radians), row.angle) << row.radians;
    }
}

}  // namespace
