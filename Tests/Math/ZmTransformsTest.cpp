#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

// --- One vector at a time ------------------------------------------------------------

TEST(ZmTransformsTest, PointsAreMovedAndVectorsOnlyTurned)
{
    OnEachPath(200, [](Random& random) {
        const ZmMatrix m = random.Matrix();
        const ZmVector v = random.Vector();
        ZmVector point, rotated, member = v;
        Zm3DMultiplyMatrixVector(&point, m, &v);
        Zm3DRotateVector(&rotated, m, &v);
        member.Rotate(m);
        ExpectClose(point, Row4(v, 1) * m);
        ExpectClose(rotated, Row4(v, 0) * m);
        EXPECT_EQ(Rotate(m, v), rotated);
        EXPECT_EQ(member, rotated);
    });
}

TEST(ZmTransformsTest, FourComponentsUseTheWholeMatrix)
{
    OnEachPath(200, [](Random& random) {
        const ZmMatrix m = random.Matrix();
        const ZmVector4 v = random.Vector4();
        const ZmVector point(v.x, v.y, v.z);
        ZmVector4 fromFour, fromThree;
        Zm3DMultiplyMatrixVector4(&fromFour, m, &v);
        Zm3DMultiplyMatrixVector4(&fromThree, m, &point);
        for (int j = 0; j < 4; ++j) {
            ExpectClose((&fromFour.x)[j], (Row4(v.x, v.y, v.z, v.w) * m)[j]);
            ExpectClose((&fromThree.x)[j], (Row4(point, 1) * m)[j]);
        }
    });
}

TEST(ZmTransformsTest, TheResultMayBeTheSource)
{
    OnEachPath(1, [](Random& random) {
        const ZmMatrix m = random.Matrix();
        const ZmVector v = random.Vector();
        ZmVector point = v, rotated = v, res;
        ZmVector4 four = random.Vector4(), res4;
        Zm3DMultiplyMatrixVector(&res, m, &v);
        Zm3DMultiplyMatrixVector(&point, m, &point);
        EXPECT_EQ(point, res);
        Zm3DRotateVector(&res, m, &v);
        Zm3DRotateVector(&rotated, m, &rotated);
        EXPECT_EQ(rotated, res);
        Zm3DMultiplyMatrixVector4(&res4, m, &four);
        Zm3DMultiplyMatrixVector4(&four, m, &four);
        EXPECT_TRUE(SameBits(four, res4));
    });
}

// --- Arrays, which must equal the single forms -------------------------------------------

struct Form {
    const char* name;
    void (*bulk)(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m, int count);
    size_t resBytes;
    void (*single)(void* res, const ZmMatrix& m, const ZmVector* v);
    bool oneStride;
};

template <class Result, void (*transform)(Result*, const ZmMatrix&, const ZmVector*)>
void Single(void* res, const ZmMatrix& m, const ZmVector* v)
{
    Result r;
    transform(&r, m, v);
    memcpy(res, &r, sizeof(r));
}

template <void (*many)(ZmVector*, const ZmMatrix&, const ZmVector*, int, int)>
void Many(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m, int count)
{
    many(static_cast<ZmVector*>(res->Ptr), m, static_cast<const ZmVector*>(src->Ptr), count, int(res->Stride));
}

constexpr auto kPoint = Single<ZmVector, Zm3DMultiplyMatrixVector>;
constexpr auto kRotate = Single<ZmVector, Zm3DRotateVector>;
constexpr auto kPoint4 = Single<ZmVector4, Zm3DMultiplyMatrixVector4>;

const Form kForms[] = {
    {"points", Zm3DMultiplyMatrixVectorStrided, 12, kPoint, false},
    {"rotated", Zm3DRotateVectorStrided, 12, kRotate, false},
    {"four components", Zm3DMultiplyMatrixVector4Strided, 16, kPoint4, false},
    {"points, one stride", Many<Zm3DMultiplyMatrixVectorMany>, 12, kPoint, true},
    {"rotated, one stride", Many<Zm3DRotateVectorMany>, 12, kRotate, true},
};

void TransformSingly(const Form& form, const ZmMatrix& m, int count, unsigned char* res, unsigned resStride,
                     const unsigned char* src, unsigned srcStride)
{
    for (int i = 0; i < count; ++i) {
        ZmVector v;
        memcpy(&v, src + size_t(i) * srcStride, sizeof(v));
        form.single(res + size_t(i) * resStride, m, &v);
    }
}

void Transform(const Form& form, const ZmMatrix& m, int count, unsigned char* res, unsigned resStride,
               const unsigned char* src, unsigned srcStride)
{
    const ZmStridedData to(res, resStride), from(const_cast<unsigned char*>(src), srcStride);
    form.bulk(&to, &from, m, count);
}

// For results and sources.
constexpr unsigned kStrides[][2] = {
    {12, 12}, {16, 16}, {24, 24}, {32, 32}, {13, 13}, {15, 15}, {17, 17}, {37, 37},
    {12, 16}, {16, 12}, {12, 32}, {32, 12}, {16, 37}, {17, 13}, {13, 32}, {16, 13},
};

TEST(ZmTransformsTest, ArraysEqualTheSingleFormsAndKeepEveryOtherByte)
{
    OnEachPath(1, [](Random& random) {
        const ZmMatrix m = random.Matrix();
        for (const Form& form : kForms) {
            for (const auto& strides : kStrides) {
                const unsigned resStride = strides[0], srcStride = strides[1];
                const bool fits = resStride >= form.resBytes && (resStride == srcStride || !form.oneStride);
                for (int count = -1; count <= 70 && fits; ++count) {
                    const size_t offset = kMargin + size_t(random.Int(0, 31)), srcOffset = size_t(random.Int(0, 31));
                    const Block src = RandomArray(random, count, srcStride, srcOffset, 3);
                    Block res = RandomBytes(random, offset + SpanOf(count, resStride, form.resBytes) + kMargin);
                    Block expected = res;
                    TransformSingly(form, m, count, &expected[offset], resStride, src.data() + srcOffset, srcStride);
                    Transform(form, m, count, &res[offset], resStride, src.data() + srcOffset, srcStride);
                    EXPECT_EQ(FirstDifference(res, expected), -1)
                        << form.name << " at " << offset << ", strides " << resStride << " " << srcStride << ", count "
                        << count;
                }
            }
        }
    });
}

TEST(ZmTransformsTest, ArraysMayBeTransformedInPlace)
{
    OnEachPath(1, [](Random& random) {
        const ZmMatrix m = random.Matrix();
        for (const Form& form : kForms) {
            for (const unsigned stride : {unsigned(form.resBytes), 16u, 17u, 24u}) {
                for (int count = 1; count <= 40; ++count) {
                    const size_t offset = size_t(random.Int(0, 31));
                    Block block = RandomArray(random, count, stride, offset, form.resBytes / 4), expected = block;
                    TransformSingly(form, m, count, &expected[offset], stride, &block[offset], stride);
                    Transform(form, m, count, &block[offset], stride, &block[offset], stride);
                    EXPECT_EQ(FirstDifference(block, expected), -1)
                        << form.name << " at " << offset << ", stride " << stride << ", count " << count;
                }
            }
        }
    });
}

TEST(ZmTransformsTest, NegativeStridesWalkBackwards)
{
    OnEachPath(1, [](Random& random) {
        const ZmMatrix m = random.Matrix();
        for (const int stride : {-12, -16, -17}) {
            const Block src = RandomArray(random, 21, size_t(-stride), 0, 3);
            Block res(src.size()), expected(src.size());
            const size_t last = src.size() - 12;
            TransformSingly(kForms[0], m, 21, expected.data(), unsigned(-stride), src.data(), unsigned(-stride));
            Zm3DMultiplyMatrixVectorMany(reinterpret_cast<ZmVector*>(&res[last]), m,
                                         reinterpret_cast<const ZmVector*>(&src[last]), 21, stride);
            EXPECT_EQ(FirstDifference(res, expected), -1) << stride;
        }
    });
}

// Arrays larger than the caches, whose results bypass them.
TEST(ZmTransformsTest, LargeArraysEqualTheSingleFormsAtAnyStart)
{
    OnEachPath(1, [](Random& random) {
        const ZmMatrix m = random.Matrix();
        constexpr int count = (24 << 20) / 12 + 41;
        const Block src = RandomArray(random, count, 12, 0, 3);
        for (const Form& form : {kForms[0], kForms[1], kForms[2]}) {
            const unsigned stride = unsigned(form.resBytes);
            Block block(size_t(count) * stride + 96), expected(size_t(count) * stride);
            TransformSingly(form, m, count, expected.data(), stride, src.data(), 12);
            for (const size_t offset : {0, 4, 16, 28, 2}) {
                unsigned char* const res = AlignedStart(block, offset);
                res[expected.size()] = 0xA5;
                Transform(form, m, count, res, stride, src.data(), 12);
                EXPECT_EQ(memcmp(res, expected.data(), expected.size()), 0) << form.name << " at " << offset;
                EXPECT_EQ(res[expected.size()], 0xA5) << form.name << " at " << offset;
            }
        }
    });
}

TEST(ZmTransformsTest, LargeArraysMayBeTransformedInPlace)
{
    OnEachPath(1, [](Random& random) {
        const ZmMatrix m = random.Matrix();
        constexpr int count = (24 << 20) / 12;
        Block block = RandomArray(random, count, 12, 0, 3), expected = block;
        TransformSingly(kForms[1], m, count, expected.data(), 12, block.data(), 12);
        Transform(kForms[1], m, count, block.data(), 12, block.data(), 12);
        EXPECT_TRUE(block == expected);
    });
}

}  // namespace
