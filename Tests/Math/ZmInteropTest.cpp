#include "ZmInterop.h"
#include "ZmPrint.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <sstream>
#include <vector>

namespace {

// What C++17 can compute at compile time.
static_assert(ZmToArray(ZmFromArray<ZmVector>({1, 2, 3}) + ZmVector(1, 1, 1))[2] == 4, "vectors");
static_assert(ZmToArray(ZmFromArray<ZmMatrix>({1, 2, 3, 4, 5, 6, 7}))[6] == 7, "matrices");
static_assert(ZmRect(1, 2, 3, 4) != ZmRect(1, 2, 3, 5), "equality");

template <class T>
class ZmInteropTest : public testing::Test {
};

typedef testing::Types<Zm2DVector, ZmVector, ZmVector4, ZmQuaternion, ZmColor, ZmMatrix> Records;
TYPED_TEST_SUITE(ZmInteropTest, Records, );  // clang++ wants the last argument, too

TYPED_TEST(ZmInteropTest, GoesThroughArraysPointersAndViewsInTheOrderOfMemory)
{
    ZmArrayOf<TypeParam> numbers;
    std::iota(numbers.begin(), numbers.end(), 1.0f);
    TypeParam record = ZmFromArray<TypeParam>(numbers);
    EXPECT_EQ(memcmp(&record, numbers.data(), sizeof(record)), 0);
    EXPECT_EQ(ZmToArray(record), numbers);
    EXPECT_EQ(ZmFromFloats<TypeParam>(numbers.data(), numbers.size()), record);

    numbers.back() = 0;
    EXPECT_EQ(ZmToArray(ZmFromFloats<TypeParam>(numbers.data(), numbers.size() - 1)), numbers);
    EXPECT_EQ(ZmToArray(ZmFromFloats<TypeParam>(nullptr, 0)), ZmArrayOf<TypeParam>{});

    const auto view = ZmFloats(record);
    EXPECT_EQ(view.size() * sizeof(float), sizeof(TypeParam));
    view[view.size() - 1] = 0;
    EXPECT_EQ(ZmToArray(record), numbers);
    const TypeParam& constant = record;
    EXPECT_TRUE(std::equal(numbers.begin(), numbers.end(), ZmFloats(constant).begin(), ZmFloats(constant).end()));
}

TYPED_TEST(ZmInteropTest, IsEqualOnlyWithAllItsFloatsEqual)
{
    const ZmArrayOf<TypeParam> numbers{};
    const TypeParam zero = ZmFromArray<TypeParam>(numbers);
    EXPECT_EQ(zero, zero);
    for (size_t i = 0; i < numbers.size(); ++i) {
        TypeParam other = zero;
        ZmFloats(other)[i] = -0.0f;
        EXPECT_EQ(other, zero);
        ZmFloats(other)[i] = std::numeric_limits<float>::denorm_min();
        EXPECT_NE(other, zero);
        ZmFloats(other)[i] = std::numeric_limits<float>::quiet_NaN();
        EXPECT_NE(other, other);
    }
}

TEST(ZmInteropTest, FindsOneMemberOfEachElement)
{
    struct Vertex {
        ZmVector position;
        Zm2DVector texture;
    };
    std::vector<Vertex> vertices(3, {{1, 2, 3}, {4, 5}});
    const std::vector<ZmVector> offsets(3, {10, 10, 10});

    const ZmStridedData textures = ZmStrided(vertices.data(), &Vertex::texture), sources = ZmStrided(offsets.data());
    EXPECT_EQ(textures.Ptr, &vertices[0].texture);
    EXPECT_EQ(textures.Stride, sizeof(Vertex));
    ASSERT_EQ(ZmCopyStructure(3, ZmStrided(vertices.data(), &Vertex::position), sizeof(ZmVector), sources), 1);
    EXPECT_EQ(vertices[2].position, offsets[2]);
    EXPECT_EQ(vertices[2].texture, Zm2DVector(4, 5));
    EXPECT_EQ(ZmStrided(static_cast<Vertex*>(nullptr), &Vertex::texture).Ptr, nullptr);
}

template <class T>
std::string Text(const T& value)
{
    std::ostringstream stream;
    stream << value;
    return stream.str();
}

TEST(ZmInteropPrintTest, WritesWhatOneReads)
{
    const ZmVector x(1, 0, 0), y(0, 1, 0), z(0, 0, 1);
    EXPECT_EQ(Text(ZmVector(0.5f, -2, 1e-9f)), "(0.5, -2, 1e-09)");
    EXPECT_EQ(Text(ZmQuaternion()), "(0, 0, 0, 1)");
    EXPECT_EQ(Text(ZmMatrix(x, y, z, {7, 8, 9})), "((1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (7, 8, 9, 1))");
    EXPECT_EQ(Text(ZmBbox{{1, 2, 3}, {-1, -2, -3}}), "[(-1, -2, -3) to (1, 2, 3)]");
    EXPECT_EQ(Text(ZmOBB{{4, 5, 6}, {x, y, z}, {1, 2, 3}}), "[(4, 5, 6), (1, 0, 0) x 1, (0, 1, 0) x 2, (0, 0, 1) x 3]");
    EXPECT_EQ(Text(ZmPlane{y, -2}), "(0, 1, 0) . p + -2 = 0");
    EXPECT_EQ(Text(ZmRay{x, z}), "(1, 0, 0) + t (0, 0, 1)");
    EXPECT_EQ(Text(ZmSphere{x, 2}), "[(1, 0, 0), 2]");
    EXPECT_EQ(Text(ZmRect(1, 2, 3, 4)), "[(1, 2) to (3, 4)]");
    EXPECT_EQ(Text(RKPOINT{3, 4}), "(3, 4)");
}

}  // namespace
