#include "ZmAnimation.h"

#include "Support/Paths.h"
#include "Support/Strided.h"

#include <algorithm>

namespace {

constexpr size_t kMost = 19;  // two groups of eight lanes and a rest

template <class T, class Make>
std::vector<T> Some(size_t count, Make make)
{
    std::vector<T> res;
    for (size_t i = 0; i < count; ++i) {
        res.push_back(make());
    }
    return res;
}

template <class T>
void ExpectSame(const Strided<T>& found, const std::vector<T>& expected)
{
    for (size_t i = 0; i < expected.size(); ++i) {
        const T element = found[i];
        EXPECT_EQ(memcmp(&element, &expected[i], sizeof(T)), 0) << i << " of " << expected.size();
    }
    EXPECT_TRUE(found.GapsAreIntact());
}

TEST(ZmAnimationTest, ProductsAndInversesAreThoseOfSingleMatrices)
{
    OnEachPath(3, [](Random& random) {
        const auto affine = [&] { return random.Affine(3); };
        for (const size_t count : {size_t(0), size_t(1), size_t(5), size_t(8), kMost}) {
            const std::vector<ZmMatrix> a = Some<ZmMatrix>(count, affine), b = Some<ZmMatrix>(count, affine);
            const ZmMatrix one = affine(), empty({0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0});
            std::vector<ZmMatrix> products(a), byOne(a), ofOne(a), inverses(a);
            for (size_t i = 0; i < count; ++i) {
                Zm3DMultiplyMatrix(products[i], a[i], b[i]);
                Zm3DMultiplyMatrix(byOne[i], one, b[i]);
                Zm3DMultiplyMatrix(ofOne[i], a[i], one);
                Zm3DInverseMatrix(inverses[i], a[i]);
            }
            Strided<ZmMatrix> left(a, 67), right(b, 64), res(b, 70), shared({one}, 64);
            const ZmStridedData single = {shared.Data().Ptr, 0};
            Zm3DMultiplyMatrixManyStrided(res.Data(), left.Data(), right.Data(), int(count));
            ExpectSame(res, products);
            Zm3DMultiplyMatrixManyStrided(res.Data(), single, right.Data(), int(count));
            ExpectSame(res, byOne);
            Zm3DMultiplyMatrixManyStrided(res.Data(), left.Data(), single, int(count));
            ExpectSame(res, ofOne);
            Zm3DMultiplyMatrixManyStrided(right.Data(), left.Data(), right.Data(), int(count));
            ExpectSame(right, products);
            Zm3DInverseMatrixStrided(left.Data(), left.Data(), int(count));
            ExpectSame(left, inverses);
            // A singular matrix is left out, and its neighbours are not.
            const size_t place = count / 2;
            std::vector<ZmMatrix> sources(a);
            sources.insert(sources.begin() + ptrdiff_t(place), empty);
            inverses.insert(inverses.begin() + ptrdiff_t(place), one);
            Strided<ZmMatrix> singular(sources, 64), kept(std::vector<ZmMatrix>(count + 1, one), 64);
            Zm3DInverseMatrixStrided(kept.Data(), singular.Data(), int(count + 1));
            ExpectSame(kept, inverses);
        }
    });
}

TEST(ZmAnimationTest, NodesFollowTheirParents)
{
    OnEachPath(3, [](Random& random) {
        const int parents[] = {-1, 0, 1, 1, 4, 99, 3, 0};  // 4 and 99 are no parents of theirs
        const std::vector<ZmMatrix> local = Some<ZmMatrix>(8, [&] { return random.Affine(2); });
        std::vector<ZmMatrix> world(local);
        for (const int i : {1, 2, 3, 6, 7}) {
            Zm3DMultiplyMatrix(world[size_t(i)], world[size_t(parents[i])], local[size_t(i)]);
        }
        Strided<ZmMatrix> source(local, 65), res(local, 68);
        ZmHierarchyStrided(res.Data(), source.Data(), parents, 8);
        ExpectSame(res, world);
        ZmHierarchyStrided(source.Data(), source.Data(), parents, 8);
        ExpectSame(source, world);
    });
}

TEST(ZmAnimationTest, QuaternionsBecomeTheMatricesOfToMatrix)
{
    OnEachPath(3, [](Random& random) {
        for (size_t count = 0; count <= kMost; ++count) {
            std::vector<ZmQuaternion> quaternions =
                Some<ZmQuaternion>(count, [&] { return random.Int(0, 3) ? random.Rotation() : ZmQuaternion(); });
            for (ZmQuaternion& q : quaternions) {
                q.x *= 1.5f;  // not of unit length, and some zeros negative
                q.y = -q.y;
            }
            std::vector<ZmMatrix> expected(count);
            for (size_t i = 0; i < count; ++i) {
                quaternions[i].ToMatrix(expected[i]);
            }
            Strided<ZmQuaternion> source(quaternions, 17);
            Strided<ZmMatrix> res(std::vector<ZmMatrix>(count, ZmMatrix::Identity()), 64 + unsigned(count) % 5);
            ZmQuaternionToMatrixStrided(res.Data(), source.Data(), int(count));
            ExpectSame(res, expected);
        }
    });
}

/// The blend of the matrices of one vertex.
ZmMatrix Blended(const std::vector<ZmMatrix>& palette, const int (&indices)[4], const float (&weights)[4],
                 int influences)
{
    ZmMatrix res = ZmMatrix::Identity();
    for (int i = 0; i < 16; ++i) {
        const auto part = [&](int k) {
            const size_t matrix = std::min(size_t(indices[k]), palette.size() - 1);
            return weights[k] * palette[matrix][i / 4][i % 4];
        };
        float sum = part(0);
        sum = influences > 1 ? sum + part(1) : sum;
        sum = influences == 3 ? sum + part(2) : influences == 4 ? sum + (part(2) + part(3)) : sum;
        res[i / 4][i % 4] = sum;
    }
    return res;
}

template <class Index>
struct Influences {
    Index indices[4];
    float weights[4];
};

template <class Index>
void CheckSkinning(Random& random, int influences)
{
    constexpr size_t count = 5;
    const std::vector<ZmMatrix> palette = Some<ZmMatrix>(6, [&] { return random.Affine(2); });
    const auto vector = [&] { return random.Vector(); };
    const std::vector<ZmVector> positions = Some<ZmVector>(count, vector), normals = Some<ZmVector>(count, vector);
    std::vector<ZmVector> movedPositions(positions), movedNormals(normals);
    std::vector<Influences<Index>> bones(count);
    for (size_t i = 0; i < count; ++i) {
        int indices[4];
        for (int k = 0; k < 4; ++k) {
            indices[k] = random.Int(0, 7) == 7 ? 250 : random.Int(0, 5);  // some beyond the palette
            bones[i].indices[k] = Index(indices[k]);
            bones[i].weights[k] = random.Float(1);
        }
        const ZmMatrix m = Blended(palette, indices, bones[i].weights, influences);
        Zm3DMultiplyMatrixVector(&movedPositions[i], m, &positions[i]);
        Zm3DRotateVector(&movedNormals[i], m, &normals[i]);
    }
    const unsigned stride = sizeof(Influences<Index>);
    const ZmSkin skin = {palette.data(),     int(palette.size()),       influences, {bones[0].indices, stride},
                         sizeof(Index) == 2, {bones[0].weights, stride}};
    Strided<ZmVector> p(positions, 15), n(normals, 12), resP(positions, 12), resN(normals, 13);
    ZmSkinVertices(skin, resP.Data(), p.Data(), resN.Data(), n.Data(), int(count));
    ExpectSame(resP, movedPositions);
    ExpectSame(resN, movedNormals);
    const ZmStridedData none(nullptr, 0);
    ZmSkinVertices(skin, p.Data(), p.Data(), none, none, int(count));
    ZmSkinVertices(skin, none, none, n.Data(), n.Data(), int(count));
    ExpectSame(p, movedPositions);
    ExpectSame(n, movedNormals);
}

TEST(ZmAnimationTest, VerticesFollowTheBlendedMatrices)
{
    OnEachPath(10, [](Random& random) {
        for (int influences = 1; influences <= 4; ++influences) {
            CheckSkinning<uint8_t>(random, influences);
            CheckSkinning<uint16_t>(random, influences);
        }
    });
}

}  // namespace
