#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

#include <algorithm>

namespace {

ZmBbox RandomBox(Random& random)
{
    const ZmVector a = random.Vector(), b = random.Vector();
    ZmBbox box;
    for (int i = 0; i < 3; ++i) {
        box.Min[i] = std::min(a[i], b[i]);
        box.Max[i] = std::max(a[i], b[i]);
    }
    return box;
}

// --- Transformed boxes -----------------------------------------------------------------

TEST(BboxTest, TransformToCountsTheCornersInBits)
{
    OnEachPath([] {
        Random random(1);
        const ZmBbox box = RandomBox(random);
        const ZmMatrix m = random.Affine(1);
        ZmVector corners[8];
        box.TransformTo(corners, m);
        for (int i = 0; i < 8; ++i) {
            const Vector4d corner(i & 1 ? box.Max.x : box.Min.x, i & 2 ? box.Max.y : box.Min.y,
                                  i & 4 ? box.Max.z : box.Min.z, 1);
            ExpectNear(corners[i], corner * Matrix44d(m), 31 * 4 * kRounding);
        }
    });
}

TEST(BboxTest, TransformFromGivesTheBoxOfTheTransformedCorners)
{
    OnEachPath([] {
        Random random(2);
        for (int round = 0; round < 300; ++round) {
            const ZmBbox box = RandomBox(random);
            const ZmMatrix m = random.Affine();
            ZmVector corners[8];
            box.TransformTo(corners, m);
            ZmBbox expected = {corners[0], corners[0]}, around, inPlace = box;
            for (int i = 0; i < 24; ++i) {
                expected.Min[i % 3] = std::min(expected.Min[i % 3], corners[i / 3][i % 3]);
                expected.Max[i % 3] = std::max(expected.Max[i % 3], corners[i / 3][i % 3]);
            }
            around.TransformFrom(box, m);
            inPlace.TransformFrom(inPlace, m);
            EXPECT_TRUE(SameBits(around, expected));
            EXPECT_TRUE(SameBits(inPlace, expected));
        }
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
    {"inside, the other is contained", {{1.8f, 1.8f, 1.8f}, {1.2f, 1.2f, 1.2f}}, {1.9f, 1.9f, 1.9f}, 1},
    {"inside, the other is equal", kThis, {1.5f, 1.5f, 1.5f}, 1},
    {"inside, the other is larger", {{3, 3, 3}, {0, 0, 0}}, {1.5f, 1.5f, 1.5f}, 0},
    {"inside, partial overlap", {{3, 2, 2}, {1.5f, 1, 1}}, {1.2f, 1.5f, 1.5f}, 0},
    {"a point on Min.x is inside", {{5, 2, 2}, {4, 1, 1}}, {1, 1.5f, 1.5f}, -1},
    {"a point on Max.z is inside", {{0.5f, 2, 2}, {0, 1, 1}}, {1.5f, 1.5f, 2}, -1},
    {"this box in between", {{5, 2, 2}, {4, 1, 1}}, {0, 1.5f, 1.5f}, -1},
    {"the other in between", {{5, 2, 2}, {4, 1, 1}}, {6, 1.5f, 1.5f}, 1},
    {"this box in between, downwards in Y", {{2, 0.5f, 2}, {1, 0, 1}}, {1.5f, 9, 1.5f}, -1},
    {"the other in between, in Z", {{2, 2, 0.5f}, {1, 1, 0}}, {1.5f, 1.5f, -3}, 1},
    {"separated, the point beside both", {{5, 2, 2}, {4, 1, 1}}, {3, 9, 1.5f}, 0},
    {"the point touches the other", {{5, 2, 2}, {4, 1, 1}}, {5, 1.5f, 1.5f}, 0},
    {"between on one axis each way", {{5, 5, 2}, {4, 4, 1}}, {0, 9, 1.5f}, -1},
    {"outside, in a larger one", {{9, 9, 9}, {0, 0, 0}}, {5, 5, 5}, -1},
    {"outside, on the face of a larger one", {{9, 9, 9}, {0, 0, 0}}, {9, 5, 5}, -1},
    {"outside a larger one too", {{3, 3, 3}, {0, 0, 0}}, {5, 5, 5}, 1},
    {"outside, partial overlap", {{3, 2, 2}, {1.5f, 1, 1}}, {0, 1.5f, 1.5f}, 0},
    {"outside, touching boxes overlap", {{3, 2, 2}, {2, 1, 1}}, {0, 1.5f, 1.5f}, 0},
    {"outside, the other contained", {{1.8f, 1.8f, 1.8f}, {1.2f, 1.2f, 1.2f}}, {0, 1.5f, 1.5f}, 0},
};

TEST(BboxTest, ClassifyTellsWhichBoxIsInFront)
{
    for (const auto& row : kClassified) {
        EXPECT_EQ(kThis.Classify(row.other, row.pt), row.expected) << row.name;
    }
}

/// The whole numbers in an interval, a bit each. Boxes of small whole numbers are three such sets.
struct BitBox {
    unsigned axis[3];

    BitBox(const ZmVector& min, const ZmVector& max)
    {
        for (int i = 0; i < 3; ++i) {
            axis[i] = (2u << int(max[i])) - (1u << int(min[i]));
        }
    }
    bool IsSubsetOf(const BitBox& other) const
    {
        return !(axis[0] & ~other.axis[0]) && !(axis[1] & ~other.axis[1]) && !(axis[2] & ~other.axis[2]);
    }
};

bool AllBelow(unsigned a, unsigned b)
{
    return a < (b & (0u - b));
}

int ExpectedClass(const BitBox& box, const BitBox& other, const BitBox& pt)
{
    bool separated = false, boxBetween = false, otherBetween = false;
    for (int i = 0; i < 3; ++i) {
        const unsigned a = box.axis[i], b = other.axis[i], p = pt.axis[i];
        separated |= !(a & b);
        boxBetween |= (AllBelow(p, a) && AllBelow(a, b)) || (AllBelow(b, a) && AllBelow(a, p));
        otherBetween |= (AllBelow(p, b) && AllBelow(b, a)) || (AllBelow(a, b) && AllBelow(b, p));
    }
    if (pt.IsSubsetOf(box)) {
        return separated ? -1 : other.IsSubsetOf(box);
    }
    if (separated) {
        return boxBetween ? -1 : otherBetween;
    }
    return !box.IsSubsetOf(other) ? 0 : pt.IsSubsetOf(other) ? -1 : 1;
}

ZmBbox SmallWholeBox(Random& random)
{
    ZmBbox box;
    for (int i = 0; i < 3; ++i) {
        box.Min[i] = float(random.Int(1, 6));
        box.Max[i] = float(random.Int(int(box.Min[i]), 6));
    }
    return box;
}

TEST(BboxTest, ClassifyAgreesWithSetsOfWholeNumbers)
{
    Random random(3);
    int seen[3] = {};
    for (int round = 0; round < 100000; ++round) {
        const ZmBbox box = SmallWholeBox(random), other = SmallWholeBox(random);
        const ZmVector pt = {float(random.Int(0, 7)), float(random.Int(0, 7)), float(random.Int(0, 7))};
        const int expected = ExpectedClass({box.Min, box.Max}, {other.Min, other.Max}, {pt, pt});
        ASSERT_EQ(box.Classify(other, pt), expected) << "round " << round;
        ++seen[expected + 1];
    }
    EXPECT_TRUE(seen[0] > 100 && seen[1] > 100 && seen[2] > 100);
}

// --- Vertices against a box ----------------------------------------------------------------

const uint32_t kBelow[3] = {0x10, 0x80, 0x200}, kAbove[3] = {0x20, 0x40, 0x100};

/// Sides of the box from 1 to 2 on each axis.
unsigned long SidesOf(const ZmVector& v, int axis)
{
    return v[axis] < 1 ? kBelow[axis] : v[axis] > 2 ? kAbove[axis] : 0;
}

TEST(BboxTest, ClassifyVerticesMarksTheSidesAtAnyStride)
{
    OnEachPath([] {
        Random random(4);
        for (const unsigned long stride : {12ul, 16ul, 13ul, 32ul}) {
            for (const int count : {0, 1, 2, 5, 64}) {
                Block block = RandomBytes(random, SpanOf(count, stride, 12));
                unsigned long flags[65], one[3][65];
                flags[count] = one[0][count] = one[1][count] = one[2][count] = 0xABCD;
                for (int i = 0; i < count; ++i) {  // 1 and 2 themselves are among them
                    const ZmVector v = {float(random.Int(1, 5)) / 2, float(random.Int(1, 5)) / 2,
                                        float(random.Int(1, 5)) / 2};
                    memcpy(&block[size_t(i) * stride], &v, 12);
                }
                kThis.ClassifyVertices(count, block.data(), stride, flags);
                for (int axis = 0; axis < 3; ++axis) {
                    kThis.ClassifyVerticesOneAxis(count, block.data(), stride, axis, one[axis]);
                }
                for (int i = 0; i < count; ++i) {
                    ZmVector v;
                    memcpy(&v, &block[size_t(i) * stride], 12);
                    EXPECT_EQ(flags[i], SidesOf(v, 0) | SidesOf(v, 1) | SidesOf(v, 2));
                    for (int axis = 0; axis < 3; ++axis) {
                        EXPECT_EQ(one[axis][i], SidesOf(v, axis)) << "axis " << axis;
                    }
                }
                EXPECT_TRUE(flags[count] == 0xABCD && one[0][count] == 0xABCD && one[2][count] == 0xABCD);
            }
        }
    });
}

TEST(BboxTest, NonNumbersAndOtherAxesAreOutsideOfNothing)
{
    OnEachPath([] {
        const ZmVector v[2] = {{NAN, 0, NAN}, {9, 9, 9}};
        const unsigned char* const bytes = reinterpret_cast<const unsigned char*>(v);
        unsigned long flags[2];
        kThis.ClassifyVertices(1, bytes, 12, flags);
        EXPECT_EQ(flags[0], 0x80u);
        for (const int axis : {-1, 3}) {
            kThis.ClassifyVerticesOneAxis(2, bytes, 12, axis, flags);
            EXPECT_EQ(flags[0] | flags[1], 0u) << axis;
        }
    });
}

// --- Boxes on the screen ---------------------------------------------------------------------

const ZmRect kScreen(100, 50, 740, 530);
const ZmRect kUntouched(1, 2, 3, 4);

bool Equal(const ZmRect& a, const ZmRect& b)
{
    return SameBits(a, b);
}

/// w = z, and depths from 1 on are visible.
ZmMatrix Perspective()
{
    ZmMatrix m({1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, -1});
    m[2][3] = 1;
    m[3][3] = 0;
    return m;
}

struct OnScreen {
    ZmRect extents = kUntouched;
    ZMCLIP_FLAGS all = ZMCLIP_NONE, any = ZMCLIP_NONE;
    int visible;

    OnScreen(const ZmMatrix& m, const ZmBbox& box) { visible = ZmTransformBox2D(m, box, &kScreen, &extents, all, any); }
};

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

TEST(BboxTest, BoxesProjectToTheScreenAndClippedSidesToItsEdges)
{
    OnEachPath([] {
        for (const auto& row : kSeen) {
            SCOPED_TRACE(row.name);
            const OnScreen seen(Perspective(), row.box);
            EXPECT_EQ(seen.visible, row.visible);
            EXPECT_EQ(unsigned(seen.all), row.all);
            EXPECT_EQ(unsigned(seen.any), row.any);
            EXPECT_TRUE(Equal(seen.extents, row.extents)) << seen.extents.left << ' ' << seen.extents.top << ' '
                                                          << seen.extents.right << ' ' << seen.extents.bottom;
        }
    });
}

TEST(BboxTest, FlagsComeWithoutExtentsToo)
{
    ZmRect extents = kUntouched;
    ZMCLIP_FLAGS all, any;
    EXPECT_EQ(ZmTransformBox2D(Perspective(), kSeen[4].box, &kScreen, nullptr, all, any), 1);
    EXPECT_EQ(unsigned(any), 0x1F0u);
    EXPECT_EQ(ZmTransformBox2D(Perspective(), kSeen[2].box, nullptr, &extents, all, any), 0);
    EXPECT_EQ(unsigned(all), 0x10u);
    EXPECT_TRUE(Equal(extents, kUntouched));
}

unsigned ClipFlags(const Vector4d& p)
{
    const double x = p[0], y = p[1], z = p[2], w = p[3];
    return (x < -w ? 0x10u : 0) | (x > w ? 0x20u : 0) | (y > w ? 0x40u : 0) | (y < -w ? 0x80u : 0) |
           (z < 0 ? 0x100u : 0) | (z > w ? 0x200u : 0);
}

/// Eight corners in clip space.
std::vector<Vector4d> ClipCorners(const ZmMatrix& m, const ZmBbox& box)
{
    std::vector<Vector4d> corners;
    for (int i = 0; i < 8; ++i) {
        const Vector4d corner(i & 1 ? box.Max.x : box.Min.x, i & 2 ? box.Max.y : box.Min.y,
                              i & 4 ? box.Max.z : box.Min.z, 1);
        corners.push_back(corner * Matrix44d(m));
    }
    return corners;
}

TEST(BboxTest, RandomBoxesProjectAsTheirCornersDo)
{
    OnEachPath([] {
        Random random(5);
        for (int round = 0; round < 2000; ++round) {
            const ZmBbox box = SmallWholeBox(random);
            ZmMatrix m;
            for (int i = 0; i < 16; ++i) {  // small whole numbers: the flags are exact
                m[i / 4][i % 4] = float(random.Int(-4, 4));
            }
            unsigned all = 0x3F0, any = 0;
            double left = 1e6, top = 1e6, right = -1e6, bottom = -1e6;
            for (const Vector4d& p : ClipCorners(m, box)) {
                all &= ClipFlags(p);
                any |= ClipFlags(p);
                if (p[3] > 0) {
                    left = std::min(left, p[0] / p[3] * 320 + 420);
                    right = std::max(right, p[0] / p[3] * 320 + 420);
                    top = std::min(top, 290 - p[1] / p[3] * 240);
                    bottom = std::max(bottom, 290 - p[1] / p[3] * 240);
                }
            }
            const OnScreen seen(m, box);
            ASSERT_EQ(unsigned(seen.all), all);
            ASSERT_EQ(unsigned(seen.any), any);
            ASSERT_EQ(seen.visible, all == 0);
            if (all == 0) {
                const bool front = (any & 0x100) != 0;
                const double tolerance = 200 * 320 * 4 * kRounding;
                EXPECT_NEAR(seen.extents.left, front && (any & 0x10) ? 100 : left, tolerance);
                EXPECT_NEAR(seen.extents.right, front && (any & 0x20) ? 740 : right, tolerance);
                EXPECT_NEAR(seen.extents.top, front && (any & 0x40) ? 50 : top, tolerance);
                EXPECT_NEAR(seen.extents.bottom, front && (any & 0x80) ? 530 : bottom, tolerance);
            }
        }
    });
}

TEST(BboxTest, DepthExtentsSpanTheCornersBeforeTheEye)
{
    Random random(6);
    for (int round = 0; round < 500; ++round) {
        const ZmBbox box = SmallWholeBox(random);
        ZmMatrix m = random.Matrix(2);
        double nearest = 1e30, farthest = -1e30;
        for (const Vector4d& p : ClipCorners(m, box)) {
            nearest = p[3] > 0 ? std::min(nearest, p[2] / p[3]) : nearest;
            farthest = p[3] > 0 ? std::max(farthest, p[2] / p[3]) : farthest;
        }
        const bool none = nearest > farthest;
        float zhMin = 77, zhMax = 78;
        ZmProjectBoxZExtents(m, box, zhMin, zhMax);
        EXPECT_NEAR(zhMin, none ? 77 : nearest, 1e-4 * (1 + nearest * nearest));
        EXPECT_NEAR(zhMax, none ? 78 : farthest, 1e-4 * (1 + farthest * farthest));
    }
}

}  // namespace
