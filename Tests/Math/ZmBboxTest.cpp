#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

#include <algorithm>

namespace {

ZmVector Corner(const ZmBbox& box, int i)
{
    return {i & 1 ? box.Max.x : box.Min.x, i & 2 ? box.Max.y : box.Min.y, i & 4 ? box.Max.z : box.Min.z};
}

ZmBbox BoxAround(const ZmVector* points, int count)
{
    ZmBbox box = {points[0], points[0]};
    for (int i = 0; i < 3 * count; ++i) {
        box.Min[i % 3] = std::min(box.Min[i % 3], points[i / 3][i % 3]);
        box.Max[i % 3] = std::max(box.Max[i % 3], points[i / 3][i % 3]);
    }
    return box;
}

/// A box with corners at integers from 1 to 6.
ZmBbox SmallWholeBox(Random& random)
{
    ZmVector corners[2];
    for (int i = 0; i < 6; ++i) {
        corners[i / 3][i % 3] = float(random.Int(1, 6));
    }
    return BoxAround(corners, 2);
}

TEST(ZmBboxTest, TransformedBoxesAreThoseOfTheTransformedCorners)
{
    OnEachPath(300, [](Random& random) {
        const ZmVector points[2] = {random.Vector(), random.Vector()};
        const ZmBbox box = BoxAround(points, 2);
        const ZmMatrix m = random.Affine();
        ZmVector corners[8];
        box.TransformTo(corners, m);
        for (int i = 0; i < 8; ++i) {
            ExpectClose(corners[i], Row4(Corner(box, i), 1) * m);
        }
        ZmBbox around, inPlace = box;
        around.TransformFrom(box, m);
        inPlace.TransformFrom(inPlace, m);
        EXPECT_TRUE(SameBits(around, BoxAround(corners, 8)));
        EXPECT_TRUE(SameBits(inPlace, around));
    });
}

// --- Which box is in front ---------------------------------------------------------------

const ZmBbox kThis = {{2, 2, 2}, {1, 1, 1}};

const struct {
    const char* name;
    ZmBbox other;  // Max first
    ZmVector pt;
    int expected;
} kClassified[] = {
    {"inside, boxes separated", {{5, 2, 2}, {4, 1, 1}}, {1.5f, 1.5f, 1.5f}, -1},
    {"inside, the other is equal", kThis, {1.5f, 1.5f, 1.5f}, 1},
    {"inside, the other is larger", {{3, 3, 3}, {0, 0, 0}}, {1.5f, 1.5f, 1.5f}, 0},
    {"inside, partial overlap", {{3, 2, 2}, {1.5f, 1, 1}}, {1.2f, 1.5f, 1.5f}, 0},
    {"a point on Min.x is inside", {{5, 2, 2}, {4, 1, 1}}, {1, 1.5f, 1.5f}, -1},
    {"this box in between, downwards in Y", {{2, 0.5f, 2}, {1, 0, 1}}, {1.5f, 9, 1.5f}, -1},
    {"the other in between, in Z", {{2, 2, 0.5f}, {1, 1, 0}}, {1.5f, 1.5f, -3}, 1},
    {"separated, the point beside both", {{5, 2, 2}, {4, 1, 1}}, {3, 9, 1.5f}, 0},
    {"between on one axis each way", {{5, 5, 2}, {4, 4, 1}}, {0, 9, 1.5f}, -1},
    {"outside, on the face of a larger one", {{9, 9, 9}, {0, 0, 0}}, {9, 5, 5}, -1},
    {"outside a larger one too", {{3, 3, 3}, {0, 0, 0}}, {5, 5, 5}, 1},
    {"outside, touching boxes overlap", {{3, 2, 2}, {2, 1, 1}}, {0, 1.5f, 1.5f}, 0},
};

TEST(ZmBboxTest, ClassifyTellsWhichBoxIsInFront)
{
    for (const auto& row : kClassified) {
        EXPECT_EQ(kThis.Classify(row.other, row.pt), row.expected) << row.name;
    }
}

/// The integers within each interval of a box, one bit each.
struct BitBox {
    unsigned axis[3];

    explicit BitBox(const ZmBbox& box)
    {
        for (int i = 0; i < 3; ++i) {
            axis[i] = (2u << int(box.Max[i])) - (1u << int(box.Min[i]));
        }
    }
    bool IsSubsetOf(const BitBox& other) const
    {
        return !(axis[0] & ~other.axis[0]) && !(axis[1] & ~other.axis[1]) && !(axis[2] & ~other.axis[2]);
    }
};

/// Whether all of a come before all of b and those before all of c, or in the opposite order.
bool InARow(unsigned a, unsigned b, unsigned c)
{
    const auto below = [](unsigned low, unsigned high) { return low < (high & (0u - high)); };
    return (below(a, b) && below(b, c)) || (below(c, b) && below(b, a));
}

int ExpectedClass(const BitBox& box, const BitBox& other, const BitBox& pt)
{
    bool separated = false, boxBetween = false, otherBetween = false;
    for (int i = 0; i < 3; ++i) {
        separated |= !(box.axis[i] & other.axis[i]);
        boxBetween |= InARow(pt.axis[i], box.axis[i], other.axis[i]);
        otherBetween |= InARow(pt.axis[i], other.axis[i], box.axis[i]);
    }
    if (pt.IsSubsetOf(box)) {
        return separated ? -1 : other.IsSubsetOf(box);
    }
    if (separated) {
        return boxBetween ? -1 : otherBetween;
    }
    return !box.IsSubsetOf(other) ? 0 : pt.IsSubsetOf(other) ? -1 : 1;
}

TEST(ZmBboxTest, ClassifyAgreesWithSetsOfWholeNumbers)
{
    Random random(1);
    for (int round = 0; round < 100000; ++round) {
        const ZmBbox box = SmallWholeBox(random), other = SmallWholeBox(random);
        const ZmVector pt = {float(random.Int(0, 7)), float(random.Int(0, 7)), float(random.Int(0, 7))};
        const int expected = ExpectedClass(BitBox(box), BitBox(other), BitBox({pt, pt}));
        ASSERT_EQ(box.Classify(other, pt), expected) << "round " << round;
    }
}

// --- Vertices against a box ----------------------------------------------------------------

unsigned long SideOf(float coordinate, int axis)
{
    const unsigned below[] = {0x10, 0x80, 0x200}, above[] = {0x20, 0x40, 0x100};
    return coordinate < 1 ? below[axis] : coordinate > 2 ? above[axis] : 0;
}

TEST(ZmBboxTest, ClassifyVerticesMarksTheSidesAtAnyStride)
{
    OnEachPath(20, [](Random& random) {
        for (const unsigned long stride : {12ul, 16ul, 13ul, 32ul}) {
            const int count = random.Int(0, 20);
            Block block = RandomBytes(random, SpanOf(count, stride, 12));
            unsigned long all[21] = {}, one[3][21] = {}, expected[3][21] = {};
            for (int i = 0; i < 3 * count; ++i) {
                const float coordinate = float(random.Int(1, 5)) / 2;  // the bounds, 1 and 2, are among them
                memcpy(&block[size_t(i / 3) * stride + size_t(i % 3) * 4], &coordinate, 4);
                expected[i % 3][i / 3] = SideOf(coordinate, i % 3);
            }
            kThis.ClassifyVertices(count, block.data(), stride, all);
            for (int axis = 0; axis < 3; ++axis) {
                kThis.ClassifyVerticesOneAxis(count, block.data(), stride, axis, one[axis]);
            }
            EXPECT_TRUE(SameBits(one, expected));
            for (int i = 0; i <= count; ++i) {
                EXPECT_EQ(all[i], expected[0][i] | expected[1][i] | expected[2][i]);
            }
        }
    });
}

TEST(ZmBboxTest, NonNumbersAndOtherAxesAreOutsideOfNothing)
{
    OnEachPath(1, [](Random&) {
        const ZmVector v(NAN, 0, NAN);
        unsigned long flags[3];
        kThis.ClassifyVertices(1, reinterpret_cast<const unsigned char*>(&v), 12, &flags[0]);
        kThis.ClassifyVerticesOneAxis(1, reinterpret_cast<const unsigned char*>(&v), 12, -1, &flags[1]);
        kThis.ClassifyVerticesOneAxis(1, reinterpret_cast<const unsigned char*>(&v), 12, 3, &flags[2]);
        EXPECT_TRUE(flags[0] == 0x80 && flags[1] == 0 && flags[2] == 0);
    });
}

// --- Boxes on the screen ---------------------------------------------------------------------

const ZmRect kScreen(100, 50, 740, 530), kUntouched(1, 2, 3, 4);

/// w = z, and depths from 1 on are visible.
ZmMatrix Perspective()
{
    ZmMatrix m({1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, -1});
    m[2][3] = 1;
    m[3][3] = 0;
    return m;
}

const struct {
    const char* name;
    ZmBbox box;  // Max first
    int visible;
    unsigned all, any;
    ZmRect extents;
} kSeen[] = {
    {"inside", {{1, 1, 4}, {-1, 0, 2}}, 1, 0, 0, {260, 170, 580, 290}},
    {"flat in Z", {{1, 1, 2}, {-1, 0, 2}}, 1, 0, 0, {260, 170, 580, 290}},
    {"wholly to the left", {{-5, 1, 3}, {-6, 0, 2}}, 0, 0x10, 0x10, kUntouched},
    {"across the right edge", {{8, 0, 4}, {0, 0, 4}}, 1, 0, 0x20, {420, 290, 1060, 290}},
    {"across the eye", {{1, 1, 4}, {-2, 0, -1}}, 1, 0, 0x1F0, {100, 50, 740, 530}},
    {"before the near plane, top cut", {{0, 2, 2}, {0, 0, 0.5f}}, 1, 0, 0x140, {420, 50, 420, 290}},
    {"wholly left and before the near plane", {{-5, 0, 2}, {-6, 0, 0.5f}}, 0, 0x10, 0x110, {100, 2, 3, 4}},
};

TEST(ZmBboxTest, BoxesProjectToTheScreenAndClippedSidesToItsEdges)
{
    OnEachPath(1, [](Random&) {
        for (const auto& row : kSeen) {
            SCOPED_TRACE(row.name);
            ZmRect extents = kUntouched;
            ZMCLIP_FLAGS all, any, allAgain, anyAgain;
            EXPECT_EQ(ZmTransformBox2D(Perspective(), row.box, &kScreen, &extents, all, any), row.visible);
            EXPECT_EQ(ZmTransformBox2D(Perspective(), row.box, &kScreen, nullptr, allAgain, anyAgain), row.visible);
            EXPECT_EQ(unsigned(all), row.all);
            EXPECT_EQ(unsigned(any), row.any);
            EXPECT_TRUE(allAgain == all && anyAgain == any);
            EXPECT_TRUE(SameBits(extents, row.extents));
        }
    });
}

TEST(ZmBboxTest, RandomBoxesProjectAsTheirCornersDo)
{
    OnEachPath(2000, [](Random& random) {
        const ZmBbox box = SmallWholeBox(random);
        ZmMatrix m;
        for (int i = 0; i < 16; ++i) {  // small whole numbers: the flags are exact
            m[i / 4][i % 4] = float(random.Int(-4, 4));
        }
        unsigned all = 0x3F0, any = 0;
        double left = 1e6, top = 1e6, right = -1e6, bottom = -1e6, nearest = 1e6, farthest = -1e6;
        for (int i = 0; i < 8; ++i) {
            const Row4 p = Row4(Corner(box, i), 1) * m;
            const double x = p[0].value, y = p[1].value, z = p[2].value, w = p[3].value;
            const unsigned flags = (x < -w ? 0x10u : 0) | (x > w ? 0x20u : 0) | (y > w ? 0x40u : 0) |
                                   (y < -w ? 0x80u : 0) | (z < 0 ? 0x100u : 0) | (z > w ? 0x200u : 0);
            all &= flags;
            any |= flags;
            if (w > 0) {
                left = std::min(left, x / w * 320 + 420);
                right = std::max(right, x / w * 320 + 420);
                top = std::min(top, 290 - y / w * 240);
                bottom = std::max(bottom, 290 - y / w * 240);
                nearest = std::min(nearest, z / w);
                farthest = std::max(farthest, z / w);
            }
        }
        ZmRect extents = kUntouched;
        ZMCLIP_FLAGS andFlags, orFlags;
        ASSERT_EQ(ZmTransformBox2D(m, box, &kScreen, &extents, andFlags, orFlags), all == 0);
        ASSERT_TRUE(andFlags == all && orFlags == any);
        if (all == 0) {
            const unsigned cut = any & 0x100 ? any : 0;
            constexpr double tolerance = 200 * 320 * 4 * kRounding;
            EXPECT_NEAR(extents.left, cut & 0x10 ? 100 : left, tolerance);
            EXPECT_NEAR(extents.right, cut & 0x20 ? 740 : right, tolerance);
            EXPECT_NEAR(extents.top, cut & 0x40 ? 50 : top, tolerance);
            EXPECT_NEAR(extents.bottom, cut & 0x80 ? 530 : bottom, tolerance);
        }
        float zhMin = 1e6f, zhMax = -1e6f;  // which stay without a corner before the eye
        ZmProjectBoxZExtents(m, box, zhMin, zhMax);
        EXPECT_NEAR(zhMin, nearest, 200 * kRounding);
        EXPECT_NEAR(zhMax, farthest, 200 * kRounding);
    });
}

}  // namespace
