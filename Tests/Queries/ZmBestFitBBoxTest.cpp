#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"
#include "Support/Strided.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace {

using Cloud = std::vector<ZmVector>;

const unsigned char* Bytes(const Cloud& cloud)
{
    return reinterpret_cast<const unsigned char*>(cloud.data());
}

ZmMatrix Fit(const Cloud& cloud, float border = 0, int expected = 1)
{
    ZmMatrix box;
    EXPECT_EQ(ZmComputeBestFitBBox(Bytes(cloud), 12, int(cloud.size()), box, border), expected);
    return box;
}

/// Half-sizes, largest first.
std::vector<float> HalfSizes(const ZmMatrix& box)
{
    std::vector<float> sizes = {Length(Row(box, 0)), Length(Row(box, 1)), Length(Row(box, 2))};
    std::sort(sizes.begin(), sizes.end(), std::greater<float>());
    return sizes;
}

/// Expects that the rows of a fitted box are orthogonal and that it contains every point, up to `tolerance`.
void ExpectAround(const ZmMatrix& box, const Cloud& cloud, double tolerance)
{
    for (int i = 0; i < 3; ++i) {
        const ZmVector axis = Row(box, i), next = Row(box, (i + 1) % 3);
        const double length = Length(axis);
        EXPECT_NEAR(Dot(axis, next), 0, 1e-5 * length * Length(next));
        EXPECT_EQ(box[i][3], 0);
        for (const ZmVector& p : cloud) {
            const ZmVector offset = p - Row(box, 3);
            if (length > 0) {
                ASSERT_LE(fabs(Dot(offset, axis)) / length, length + tolerance);
            }
        }
    }
    EXPECT_EQ(box[3][3], 1);
}

/// The corners of a box, and points within it, placed by a rotation and an offset.
Cloud MakeCloud(Random& random, const ZmVector& half, const ZmVector& offset, int inside)
{
    ZmMatrix turn;
    random.Rotation().ToMatrix(turn);
    Cloud cloud;
    for (int i = 0; i < 8 + inside; ++i) {
        const ZmVector sign =
            i < 8 ? ZmVector(i & 1 ? 1.0f : -1.0f, i & 2 ? 1.0f : -1.0f, i & 4 ? 1.0f : -1.0f) : random.Vector(1);
        cloud.push_back(offset + Rotate(turn, {sign.x * half.x, sign.y * half.y, sign.z * half.z}));
    }
    return cloud;
}

TEST(ZmBestFitBBoxTest, FindsTheBoxOfItsCorners)
{
    const struct {
        const char* name;
        ZmVector half, offset;
        double tolerance;
    } rows[] = {
        {"at the origin", {3, 2, 1}, {0, 0, 0}, 1e-5},
        {"flat", {3, 2, 0}, {1, 2, 3}, 1e-5},
        {"straight", {3, 0, 0}, {1, 2, 3}, 1e-5},
        {"small", {3e-4f, 2e-4f, 1e-4f}, {0, 0, 0}, 1e-9},
        {"large", {3e5f, 2e5f, 1e5f}, {0, 0, 0}, 1},
        {"far away", {3, 2, 1}, {9000, -8000, 7000}, 3e-3},  // of which coordinates have 1e-3
        {"thin", {1, 1e-2f, 1e-3f}, {0, 0, 0}, 3e-5},
    };
    for (const auto& row : rows) {
        OnEachPath(20, [&](Random& random) {
            SCOPED_TRACE(row.name);
            const Cloud cloud = MakeCloud(random, row.half, row.offset, 0);
            const ZmMatrix box = Fit(cloud);
            const std::vector<float> sizes = HalfSizes(box);
            EXPECT_NEAR(sizes[0], row.half.x, row.tolerance);
            EXPECT_NEAR(sizes[1], row.half.y, row.tolerance);
            EXPECT_NEAR(sizes[2], row.half.z, row.tolerance);
            EXPECT_LT(Length(Row(box, 3) - row.offset), 2 * row.tolerance);
            ExpectAround(box, cloud, row.tolerance);
        });
    }
}

TEST(ZmBestFitBBoxTest, TheBoxOfAScaledCloudIsTheScaledBox)
{
    // Powers of two cause no rounding. The squares of the tiny and huge sizes are out of the range of float.
    constexpr float factors[] = {0x1p-90f, 0x1p-75f, 0x1p-50f, 0x1p10f, 0x1p80f};
    OnEachPath(20, [&](Random& random) {
        const Cloud cloud = MakeCloud(random, {3, 2, 1}, {5, 6, 7}, 10);
        const ZmMatrix box = Fit(cloud);
        for (const float factor : factors) {
            SCOPED_TRACE(factor);
            Cloud scaled = cloud;
            for (ZmVector& p : scaled) {
                p *= factor;
            }
            const ZmMatrix fitted = Fit(scaled, 0, factor < 1e6f);
            for (int i = 0; i < 12; ++i) {
                EXPECT_EQ(fitted[i / 3][i % 3], box[i / 3][i % 3] * factor);
            }
        }
    });
}

TEST(ZmBestFitBBoxTest, AMillionPointsFarAwayLoseNothing)
{
    // A grid, so that the covariance is known. All of its coordinates are floats.
    Cloud cloud;
    for (int i = 0; i < 1000000; ++i) {
        cloud.push_back({4096 + float(i % 100) / 64, 8192 + float(i / 100 % 100) / 64, 2048 + float(i / 10000) / 64});
    }
    constexpr float variance = 9999.0f / 12 / 4096;
    OnEachPath(1, [&](Random&) {
        ZmEigenMatrix eigen;
        eigen.Covariance(Bytes(cloud), 12, int(cloud.size()));
        for (int i = 0; i < 9; ++i) {
            EXPECT_FLOAT_EQ(1 + eigen.Matrix[i / 3][i % 3], 1 + (i % 4 ? 0 : variance));
            EXPECT_NEAR(eigen.Matrix[i / 3][i % 3], i % 4 ? 0 : variance, 1e-7 * variance);
        }
    });
}

TEST(ZmBestFitBBoxTest, TheCovarianceIsThatOfThePopulation)
{
    const Cloud cloud = {{1, 2, 0}, {3, 6, 0}, {1, 2, 9}, {3, 6, 9}};
    constexpr float expected[3][3] = {{1, 2, 0}, {2, 4, 0}, {0, 0, 20.25f}};
    ZmEigenMatrix eigen;
    eigen.Covariance(Bytes(cloud), 12, 4);
    EXPECT_EQ(std::memcmp(eigen.Matrix, expected, sizeof(expected)), 0);
    eigen.Covariance(Bytes({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {6, 0, 0}, {0, 0, 0}}), 12, 6);
    EXPECT_FLOAT_EQ(eigen.Matrix[0][0], 5) << "no whole number of registers";
    eigen.Covariance(Bytes(cloud), 12, 0);
    EXPECT_EQ(eigen.Matrix[0][0], 0) << "no points";
    eigen.Covariance(nullptr, 12, 4);
    EXPECT_EQ(eigen.Matrix[2][2], 0) << "no pointer";
}

TEST(ZmBestFitBBoxTest, AnyStrideReadsItsPointsAndNothingElse)
{
    OnEachPath(60, [](Random& random) {
        const int count = random.Int(1, 30);
        const Cloud cloud = MakeCloud(random, {3, 2, 1}, {5, 6, 7}, count - 1);
        const ZmMatrix tight = Fit(cloud);
        for (const unsigned long stride : {13ul, 16ul, 32ul, 40ul}) {
            const size_t offset = size_t(random.Int(0, 3));
            Block block = RandomBytes(random, offset + SpanOf(int(cloud.size()), stride, 12));
            for (size_t i = 0; i < cloud.size(); ++i) {
                memcpy(&block[offset + i * stride], &cloud[i], 12);
            }
            ZmMatrix box;
            ASSERT_EQ(ZmComputeBestFitBBox(&block[offset], stride, int(cloud.size()), box, 0), 1);
            EXPECT_TRUE(SameBits(box, tight)) << "stride " << stride;
        }
    });
}

TEST(ZmBestFitBBoxTest, TheBorderGrowsEachHalfSize)
{
    Random random(3);
    const Cloud cloud = MakeCloud(random, {3, 2, 1}, {1, 1, 1}, 5);
    const std::vector<float> without = HalfSizes(Fit(cloud)), with = HalfSizes(Fit(cloud, 0.5f));
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(with[i], without[i] + 0.5f, 1e-6);
    }
    const ZmMatrix point = Fit({{3, 4, 5}}, 0.25f);
    EXPECT_EQ(HalfSizes(point), (std::vector<float>{0.25f, 0.25f, 0.25f}));
    EXPECT_EQ(Row(point, 3), ZmVector(3, 4, 5));
    EXPECT_EQ(HalfSizes(Fit({{3, 4, 5}, {3, 4, 5}, {3, 4, 5}})), (std::vector<float>{0, 0, 0}));
}

TEST(ZmBestFitBBoxTest, NothingAndTooMuchFail)
{
    ZmMatrix box = {{9, 9, 9}, {9, 9, 9}, {9, 9, 9}, {9, 9, 9}};
    const Cloud cloud = {{1, 2, 3}};
    EXPECT_EQ(ZmComputeBestFitBBox(Bytes(cloud), 12, 0, box, 1), 0);
    EXPECT_TRUE(SameBits(box, ZmMatrix::Identity()));
    box[0][0] = 9;
    EXPECT_EQ(ZmComputeBestFitBBox(nullptr, 12, 1, box, 1), 0);
    EXPECT_TRUE(SameBits(box, ZmMatrix::Identity()));
    box[0][0] = 9;
    EXPECT_EQ(ZmComputeBestFitBBox(Bytes(cloud), 12, -1, box, 1), 0);
    EXPECT_TRUE(SameBits(box, ZmMatrix::Identity()));

    EXPECT_EQ(Fit({{1e7f, 0, 0}, {1e7f, 1, 0}}, 0, 0)[3][0], 1e7f) << "left as computed";
    Fit({{0, 0, 0}, {0, 0, 3e6f}}, 0, 0);
    Fit({{0, 0, 0}, {nanf(""), 0, 1}, {1, 2, 3}}, 0, 0);
    Fit({{-1e6f, 0, 0}, {1e6f, 0, 0}});
}

/// A cloud whose axes take few or many steps to find, or none.
Cloud AnyCloud(Random& random)
{
    const ZmVector halves[] = {
        {3, 2, 1}, {1, 1, 1}, {3, 2, 0}, {1, 1, 0}, {3, 0, 0}, {0, 0, 0}, {1e-20f, 2e-20f, 3e-20f}};
    const ZmVector half = halves[random.Int(0, 6)], offset = random.Vector(1000);
    Cloud cloud;
    switch (random.Int(0, 5)) {
    case 0: return cloud;
    case 1:  // along the axes of the coordinate system
        for (int i = 0; i < 8; ++i) {
            cloud.push_back({i & 1 ? half.x : 0, i & 2 ? half.y : 0, i & 4 ? half.z : 0});
        }
        return cloud;
    case 2: return {{1e7f, 0, 0}, {1e7f, 1, 0}, random.Vector()};
    default: return MakeCloud(random, half, offset, random.Int(0, 60));
    }
}

TEST(ZmBestFitBBoxTest, ManyCloudsGiveTheBitsOfSingleCalls)
{
    OnEachPath(60, [](Random& random) {
        const int count = random.Int(0, 20);
        std::vector<Cloud> all;
        std::vector<ZmPointCloud> clouds;
        for (int i = 0; i < count; ++i) {
            all.push_back(AnyCloud(random));
        }
        for (Cloud& cloud : all) {
            clouds.push_back({{cloud.data(), 12}, int(cloud.size())});
        }
        Strided<ZmMatrix> boxes(std::vector<ZmMatrix>(size_t(count)), unsigned(random.Int(64, 67)));
        std::vector<uint8_t> fitted(size_t(count) + 1, 9);
        const int found = ZmComputeBestFitBBoxes(boxes.Data(), clouds.data(), count, 0.25f, fitted.data());
        EXPECT_TRUE(boxes.GapsAreIntact());
        int expected = 0;
        for (size_t i = 0; i < all.size(); ++i) {
            ZmMatrix box;
            const int one = ZmComputeBestFitBBox(Bytes(all[i]), 12, int(all[i].size()), box, 0.25f);
            EXPECT_TRUE(SameBits(boxes[i], box)) << i;
            EXPECT_EQ(fitted[i], one) << i;
            expected += one;
        }
        EXPECT_EQ(found, expected);
        EXPECT_EQ(fitted[size_t(count)], 9);
        EXPECT_EQ(ZmComputeBestFitBBoxes(boxes.Data(), clouds.data(), count, 0.25f, nullptr), expected);
    });
}

TEST(ZmBestFitBBoxTest, ACloudWithoutAxesLeavesTheOthersAlone)
{
    OnEachPath(1, [](Random& random) {
        const Cloud good = MakeCloud(random, {3, 2, 1}, {5, 6, 7}, 10), bad = {{0, 0, 0}, {nanf(""), 0, 1}, {1, 2, 3}};
        std::vector<ZmPointCloud> clouds;
        for (int i = 0; i < 9; ++i) {
            const Cloud& cloud = i % 2 ? bad : good;
            clouds.push_back({{const_cast<ZmVector*>(cloud.data()), 12}, int(cloud.size())});
        }
        clouds[8].points.Ptr = nullptr;
        std::vector<ZmMatrix> boxes(9);
        uint8_t fitted[9];
        EXPECT_EQ(ZmComputeBestFitBBoxes({boxes.data(), 64}, clouds.data(), 9, 0, fitted), 4);
        for (size_t i = 0; i < 8; ++i) {
            EXPECT_EQ(fitted[i], i % 2 == 0);
        }
        EXPECT_TRUE(SameBits(boxes[6], Fit(good)));
        EXPECT_TRUE(SameBits(boxes[8], ZmMatrix::Identity()));
    });
}

}  // namespace
