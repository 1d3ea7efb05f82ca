#include "ZmAnimation.h"

#include "Support/Paths.h"
#include "Support/Strided.h"
#include "ZmBuilders.h"
#include "ZmInterpolation.h"

namespace {

constexpr size_t kMost = 19;  // two groups of eight lanes and a rest

/// Whether all floats have the same bits, or are NaNs of any kind.
template <class T>
bool AreSame(const T& a, const T& b)
{
    for (size_t i = 0; i < sizeof(T); i += sizeof(float)) {
        float x, y;
        memcpy(&x, reinterpret_cast<const char*>(&a) + i, sizeof(x));
        memcpy(&y, reinterpret_cast<const char*>(&b) + i, sizeof(y));
        if (memcmp(&x, &y, sizeof(x)) != 0 && !(isnan(x) && isnan(y))) {
            return false;
        }
    }
    return true;
}

template <class T>
void ExpectSame(const Strided<T>& found, const std::vector<T>& expected)
{
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_TRUE(AreSame(found[i], expected[i])) << i << " of " << expected.size();
    }
    EXPECT_TRUE(found.GapsAreIntact());
}

/// The array at a tight and at an odd stride.
template <class T>
Strided<T> Spread(const std::vector<T>& elements)
{
    return {elements, unsigned(sizeof(T)) + (elements.size() % 2 ? 5 : 0)};
}

/// Units, and some of other lengths, none included.
ZmQuaternion Key(Random& random)
{
    const ZmQuaternion q = random.Rotation();
    const float lengths[] = {1, 1, 1, 1 + 0x1p-16f, 1.01f, 3e8f, 1e-19f, 0};
    return q * lengths[random.Int(0, 7)];
}

/// Between the keys, at them and beyond.
float Time(Random& random)
{
    const float special[] = {0, 1, -0.25f, 1.5f, -0.0f, 0x1p-40f, 1 - 0x1p-24f};
    const int row = random.Int(0, 20);
    return row < 7 ? special[row] : random.Float(0, 1);
}

using Single = ZmQuaternion (*)(const ZmQuaternion&, const ZmQuaternion&, float);
using Many = void (*)(const ZmStridedData&, const ZmStridedData&, const ZmStridedData&, const ZmStridedData&, int);

const struct {
    const char* name;
    Single single;
    Many many;
} kInterpolations[] = {
    {"SlerpExact", SlerpExact, ZmSlerpStrided},
    {"Nlerp", Nlerp, ZmNlerpStrided},
};

TEST(ZmAnimationRotationsTest, QuaternionsAreInterpolatedAsSingly)
{
    OnEachPath(20, [](Random& random) {
        for (const auto& row : kInterpolations) {
            for (size_t count = 0; count <= kMost; ++count) {
                SCOPED_TRACE(row.name);
                std::vector<ZmQuaternion> a, b, apart, ofOne, atOne;
                std::vector<float> t;
                for (size_t i = 0; i < count; ++i) {
                    a.push_back(Key(random));
                    b.push_back(random.Int(0, 5) ? Key(random) : a.back());
                    t.push_back(Time(random));
                    apart.push_back(row.single(a[i], b[i], t[i]));
                    ofOne.push_back(row.single(a[0], b[i], t[i]));
                    atOne.push_back(row.single(a[i], b[i], t[0]));
                }
                const int n = int(count);
                Strided<ZmQuaternion> from = Spread(a), to = Spread(b), res = Spread(a);
                Strided<float> times = Spread(t);
                row.many(res.Data(), from.Data(), to.Data(), times.Data(), n);
                ExpectSame(res, apart);
                row.many(res.Data(), {from.Data().Ptr, 0}, to.Data(), times.Data(), n);
                ExpectSame(res, ofOne);
                row.many(res.Data(), from.Data(), to.Data(), {times.Data().Ptr, 0}, n);
                ExpectSame(res, atOne);
                row.many(to.Data(), from.Data(), to.Data(), times.Data(), n);
                ExpectSame(to, apart);
                row.many(from.Data(), from.Data(), Spread(b).Data(), times.Data(), n);
                ExpectSame(from, apart);
            }
        }
    });
}

TEST(ZmAnimationRotationsTest, OneTimeForAllNeedsNoArray)
{
    const ZmQuaternion a(0.6f, 0, 0, 0.8f), b(0, 0.8f, 0, -0.6f), keys[] = {a, b, a};
    ZmQuaternion res[3];
    const ZmStridedData to(res, sizeof(a)), from(const_cast<ZmQuaternion*>(keys), sizeof(a));
    ZmSlerpStrided(to, from, {const_cast<ZmQuaternion*>(&b), 0}, 0.3f, 2);
    EXPECT_EQ(res[0], SlerpExact(a, b, 0.3f));
    EXPECT_EQ(res[1], SlerpExact(b, b, 0.3f));
    ZmNlerpStrided(to, from, {const_cast<ZmQuaternion*>(&b), 0}, 0.3f, 1);
    EXPECT_EQ(res[0], Nlerp(a, b, 0.3f));
    EXPECT_EQ(res[2], ZmQuaternion());
}

TEST(ZmAnimationRotationsTest, ProductsAreThoseOfSingleQuaternions)
{
    OnEachPath(5, [](Random& random) {
        for (size_t count = 0; count <= kMost; ++count) {
            std::vector<ZmQuaternion> a, b, products, byOne, ofOne;
            for (size_t i = 0; i < count; ++i) {
                a.push_back(Key(random));
                b.push_back(Key(random));
                products.push_back(Zm3DQuaternionMultiply(a[i], b[i]));
                byOne.push_back(Zm3DQuaternionMultiply(a[i], b[0]));
                ofOne.push_back(Zm3DQuaternionMultiply(a[0], b[i]));
            }
            Strided<ZmQuaternion> left = Spread(a), right = Spread(b), res = Spread(a);
            Zm3DQuaternionMultiplyStrided(res.Data(), left.Data(), right.Data(), int(count));
            ExpectSame(res, products);
            Zm3DQuaternionMultiplyStrided(res.Data(), left.Data(), {right.Data().Ptr, 0}, int(count));
            ExpectSame(res, byOne);
            Zm3DQuaternionMultiplyStrided(res.Data(), {left.Data().Ptr, 0}, right.Data(), int(count));
            ExpectSame(res, ofOne);
            Zm3DQuaternionMultiplyStrided(left.Data(), left.Data(), right.Data(), int(count));
            ExpectSame(left, products);
        }
    });
}

TEST(ZmAnimationRotationsTest, LengthsBecomeOneAsSingly)
{
    OnEachPath(5, [](Random& random) {
        for (size_t count = 0; count <= kMost; ++count) {
            std::vector<ZmQuaternion> quaternions, unitQuaternions;
            std::vector<ZmVector> vectors, unitVectors;
            for (size_t i = 0; i < count; ++i) {
                const float size = random.Int(0, 1) ? 1.0f : 1e-25f;
                quaternions.push_back(Key(random));
                vectors.push_back(random.Vector(size));
                unitQuaternions.push_back(Normalized(quaternions[i]));
                unitVectors.push_back(Normalized(vectors[i]));
            }
            Strided<ZmQuaternion> q = Spread(quaternions), resQ = q;
            ZmNormalizeQuaternionStrided(resQ.Data(), q.Data(), int(count));
            ExpectSame(resQ, unitQuaternions);
            ZmNormalizeQuaternionStrided(q.Data(), q.Data(), int(count));
            ExpectSame(q, unitQuaternions);
            Strided<ZmVector> v = Spread(vectors), resV(vectors, 16);
            ZmNormalizeVectorStrided(resV.Data(), v.Data(), int(count));
            ExpectSame(resV, unitVectors);
            ZmNormalizeVectorStrided(v.Data(), v.Data(), int(count));
            ExpectSame(v, unitVectors);
        }
    });
}

TEST(ZmAnimationRotationsTest, TransformsAreThoseOfTheBuilder)
{
    const ZmStridedData none(nullptr, 0);
    OnEachPath(5, [&](Random& random) {
        for (size_t count = 0; count <= kMost; ++count) {
            std::vector<ZmVector> positions, scales;
            std::vector<ZmQuaternion> rotations;
            std::vector<ZmMatrix> all, moved, turned, scaled;
            for (size_t i = 0; i < count; ++i) {
                positions.push_back(random.Vector());
                rotations.push_back(random.Rotation() * random.Float(0.5f, 2));
                scales.push_back(random.Vector());
                all.push_back(ZmTransform(positions[i], rotations[i], scales[i]));
                moved.push_back(ZmTransform(positions[i], ZmQuaternion()));
                turned.push_back(ZmTransform(ZmVector(0, 0, 0), rotations[i]));
                scaled.push_back(ZmTransform(positions[0], ZmQuaternion(), scales[i]));
            }
            Strided<ZmVector> p = Spread(positions), s = Spread(scales);
            Strided<ZmQuaternion> q = Spread(rotations);
            Strided<ZmMatrix> res = Spread(all);
            ZmTransformMatrixStrided(res.Data(), p.Data(), q.Data(), s.Data(), int(count));
            ExpectSame(res, all);
            ZmTransformMatrixStrided(res.Data(), p.Data(), none, none, int(count));
            ExpectSame(res, moved);
            ZmTransformMatrixStrided(res.Data(), none, q.Data(), none, int(count));
            ExpectSame(res, turned);
            ZmTransformMatrixStrided(res.Data(), {p.Data().Ptr, 0}, none, s.Data(), int(count));
            ExpectSame(res, scaled);
        }
    });
}

}  // namespace
