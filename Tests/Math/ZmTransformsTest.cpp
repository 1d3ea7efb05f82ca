#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

// --- One vector at a time ------------------------------------------------------------

const double kFourTerms = 4 * kRounding;  // three additions and a product

void ExpectSum(float got, const Vector4d& v, const Matrix44d& m, int j)
{
    const double magnitude = (v.Magnitudes() * m.Magnitudes())[j];
    EXPECT_NEAR(got, (v * m)[j], kFourTerms * magnitude) << "component " << j;
}

TEST(TransformTest, PointsGetTheTranslation)
{
    OnEachPath([] {
        Random random(1);
        for (int round = 0; round < 200; ++round) {
            const ZmMatrix m = random.Matrix();
            const ZmVector v = random.Vector();
            ZmVector res;
            Zm3DMultiplyMatrixVector(&res, m, &v);
            for (int j = 0; j < 3; ++j) {
                ExpectSum(res[j], Vector4d(v, 1), Matrix44d(m), j);
            }
        }
    });
}

TEST(TransformTest, RotatedVectorsDoNotGetTheTranslation)
{
    OnEachPath([] {
        Random random(2);
        for (int round = 0; round < 200; ++round) {
            const ZmMatrix m = random.Matrix();
            const ZmVector v = random.Vector();
            ZmVector res, inPlace = v;
            Zm3DRotateVector(&res, m, &v);
            inPlace.Rotate(m);
            for (int j = 0; j < 3; ++j) {
                ExpectSum(res[j], Vector4d(v, 0), Matrix44d(m), j);
            }
            EXPECT_EQ(Rotate(m, v), res);
            EXPECT_EQ(inPlace, res);
        }
    });
}

TEST(TransformTest, FourComponentsUseTheWholeMatrix)
{
    OnEachPath([] {
        Random random(3);
        for (int round = 0; round < 200; ++round) {
            const ZmMatrix m = random.Matrix();
            const ZmVector4 v = random.Vector4();
            const ZmVector point(v.x, v.y, v.z);
            ZmVector4 fromFour, fromThree;
            Zm3DMultiplyMatrixVector4(&fromFour, m, &v);
            Zm3DMultiplyMatrixVector4(&fromThree, m, &point);
            for (int j = 0; j < 4; ++j) {
                ExpectSum((&fromFour.x)[j], Vector4d(v), Matrix44d(m), j);
                ExpectSum((&fromThree.x)[j], Vector4d(point, 1), Matrix44d(m), j);
            }
        }
    });
}

TEST(TransformTest, TheResultMayBeTheSource)
{
    OnEachPath([] {
        Random random(4);
        const ZmMatrix m = random.Matrix();
        const ZmVector v = random.Vector();
        const ZmVector4 v4 = random.Vector4();
        ZmVector point = v, rotated = v, res;
        ZmVector4 four = v4, res4;
        Zm3DMultiplyMatrixVector(&res, m, &v);
        Zm3DMultiplyMatrixVector(&point, m, &point);
        EXPECT_EQ(point, res);
        Zm3DRotateVector(&res, m, &v);
        Zm3DRotateVector(&rotated, m, &rotated);
        EXPECT_EQ(rotated, res);
        Zm3DMultiplyMatrixVector4(&res4, m, &v4);
        Zm3DMultiplyMatrixVector4(&four, m, &four);
        EXPECT_TRUE(SameBits(four, res4));
    });
}

// --- Arrays --------------------------------------------------------------------------

using Bulk = void (*)(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m, int count);

struct Form {
    const char* name;
    Bulk bulk;
    bool manyOnly;  // one stride for both arrays
    size_t resBytes;
    void (*single)(void* res, const ZmMatrix& m, const ZmVector* v);
};

template <class Result, void (*transform)(Result*, const ZmMatrix&, const ZmVector*)>
void Single(void* res, const ZmMatrix& m, const ZmVector* v)
{
    Result r;
    transform(&r, m, v);
    memcpy(res, &r, sizeof r);
}

template <void (*many)(ZmVector*, const ZmMatrix&, const ZmVector*, int, int)>
void Many(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m, int count)
{
    many(static_cast<ZmVector*>(res->Ptr), m, static_cast<const ZmVector*>(src->Ptr), count, int(res->Stride));
}

const Form kForms[] = {
    {"points", Zm3DMultiplyMatrixVectorStrided, false, 12, Single<ZmVector, Zm3DMultiplyMatrixVector>},
    {"points, one stride", Many<Zm3DMultiplyMatrixVectorMany>, true, 12, Single<ZmVector, Zm3DMultiplyMatrixVector>},
    {"rotated", Zm3DRotateVectorStrided, false, 12, Single<ZmVector, Zm3DRotateVector>},
    {"rotated, one stride", Many<Zm3DRotateVectorMany>, true, 12, Single<ZmVector, Zm3DRotateVector>},
    {"four components", Zm3DMultiplyMatrixVector4Strided, false, 16, Single<ZmVector4, Zm3DMultiplyMatrixVector4>},
};

struct Shape {
    const char* name;
    unsigned resStride, srcStride;
    size_t resOffset, srcOffset;
};

const Shape kShapes[] = {
    {"tight", 12, 12, 0, 0},
    {"tight, 4 bytes off", 12, 12, 4, 8},
    {"tight, odd addresses", 12, 12, 1, 3},
    {"quads", 16, 16, 0, 0},
    {"quads, odd addresses", 16, 16, 5, 9},
    {"6 floats", 24, 24, 0, 0},
    {"8 floats", 32, 32, 12, 12},
    {"13 bytes", 13, 13, 0, 0},
    {"15 bytes", 15, 15, 0, 0},
    {"17 bytes", 17, 17, 0, 0},
    {"37 bytes", 37, 37, 2, 1},
    {"tight from quads", 12, 16, 0, 0},
    {"quads from tight", 16, 12, 0, 0},
    {"tight from 8 floats", 12, 32, 0, 20},
    {"8 floats from tight", 32, 12, 20, 0},
    {"quads from 37 bytes", 16, 37, 0, 0},
    {"17 bytes from 13", 17, 13, 0, 0},
    {"13 bytes from 8 floats", 13, 32, 0, 0},
};

bool Fits(const Form& form, const Shape& shape)
{
    return shape.resStride >= form.resBytes && (!form.manyOnly || shape.resStride == shape.srcStride);
}

/// What the block must hold afterwards: the single form at each element, all other bytes as they were.
Block Expected(Block res, const Block& src, const Form& form, const Shape& shape, const ZmMatrix& m, int count)
{
    for (int i = 0; i < count; ++i) {
        ZmVector v;
        memcpy(&v, &src[shape.srcOffset + size_t(i) * shape.srcStride], sizeof v);
        form.single(&res[shape.resOffset + size_t(i) * shape.resStride], m, &v);
    }
    return res;
}

void ExpectSinglesOfTheArray(Random& random, const Form& form, Shape shape, const ZmMatrix& m, int count)
{
    shape.resOffset += kMargin;
    Block src = RandomArray(random, count, shape.srcStride, shape.srcOffset, 3);
    Block res = RandomBytes(random, shape.resOffset + SpanOf(count, shape.resStride, form.resBytes) + kMargin);
    const Block expected = Expected(res, src, form, shape, m, count);
    const ZmStridedData from(src.data() + shape.srcOffset, shape.srcStride);
    const ZmStridedData to(res.data() + shape.resOffset, shape.resStride);
    form.bulk(&to, &from, m, count);
    EXPECT_EQ(FirstDifference(res, expected), -1) << shape.name << ", count " << count;
}

TEST(TransformTest, ArraysEqualTheSingleFormsAndKeepEveryOtherByte)
{
    OnEachPath([] {
        Random random(5);
        const ZmMatrix m = random.Matrix();
        for (const Form& form : kForms) {
            SCOPED_TRACE(form.name);
            for (const Shape& shape : kShapes) {
                for (int count = -1; count <= 70 && Fits(form, shape); ++count) {
                    ExpectSinglesOfTheArray(random, form, shape, m, count);
                }
            }
        }
    });
}

TEST(TransformTest, TightArraysMayStartAtAnyAddress)
{
    OnEachPath([] {
        Random random(11);
        const ZmMatrix m = random.Matrix();
        for (const Form& form : kForms) {
            SCOPED_TRACE(form.name);
            for (size_t offset = 0; offset < 32; ++offset) {
                const Shape shape = {"tight", unsigned(form.resBytes), 12, offset, offset / 2};
                for (const int count : {8, 17, 37, 64}) {
                    ExpectSinglesOfTheArray(random, form, shape, m, count);
                }
            }
        }
    });
}

TEST(TransformTest, ArraysMayBeTransformedInPlace)
{
    OnEachPath([] {
        Random random(6);
        const ZmMatrix m = random.Matrix();
        for (const Form& form : kForms) {
            SCOPED_TRACE(form.name);
            for (const Shape& shape : kShapes) {
                for (int count = 1; count <= 40 && Fits(form, shape) && shape.resStride == shape.srcStride; ++count) {
                    Block block = RandomArray(random, count, shape.srcStride, shape.srcOffset, form.resBytes / 4);
                    const Shape inPlace = {"", shape.srcStride, shape.srcStride, shape.srcOffset, shape.srcOffset};
                    const Block expected = Expected(block, block, form, inPlace, m, count);
                    const ZmStridedData data(block.data() + shape.srcOffset, shape.srcStride);
                    form.bulk(&data, &data, m, count);
                    EXPECT_EQ(FirstDifference(block, expected), -1) << shape.name << ", count " << count;
                }
            }
        }
    });
}

TEST(TransformTest, NegativeStridesWalkBackwards)
{
    OnEachPath([] {
        Random random(7);
        const ZmMatrix m = random.Matrix();
        for (const int stride : {-12, -16, -17}) {
            const int count = 21;
            const Block src = RandomArray(random, count, size_t(-stride), 0, 3);
            Block points(src.size()), rotated(src.size());
            const size_t last = size_t(count - 1) * size_t(-stride);
            const ZmVector* const v = reinterpret_cast<const ZmVector*>(&src[last]);
            Zm3DMultiplyMatrixVectorMany(reinterpret_cast<ZmVector*>(&points[last]), m, v, count, stride);
            Zm3DRotateVectorMany(reinterpret_cast<ZmVector*>(&rotated[last]), m, v, count, stride);
            const unsigned forwards = unsigned(-stride);
            const Shape shape = {"", forwards, forwards, 0, 0};
            EXPECT_EQ(FirstDifference(points, Expected(Block(src.size()), src, kForms[0], shape, m, count)), -1)
                << stride;
            EXPECT_EQ(FirstDifference(rotated, Expected(Block(src.size()), src, kForms[2], shape, m, count)), -1)
                << stride;
        }
    });
}

// --- Arrays larger than the caches, which are written past them ------------------------

const int kLargeCount = (24 << 20) / 12 + 41;

/// Bytes of a large array that starts `offset` bytes behind a multiple of 16.
unsigned char* StartOf(Block& block, size_t offset)
{
    return block.data() + (16 - uintptr_t(block.data()) % 16) % 16 + offset;
}

TEST(TransformTest, LargeTightArraysEqualTheSingleFormsAtAnyStart)
{
    Random random(8);
    const ZmMatrix m = random.Matrix();
    Block src = RandomArray(random, kLargeCount, 12, 0, 3);
    const ZmStridedData from(src.data(), 12);
    const Shape shape = {"", 12, 12, 0, 0};
    Block block(src.size() + 64);
    for (const size_t offset : {0, 4, 8, 12, 2}) {
        const Form& form = kForms[offset == 4 ? 2 : 0];
        const Block expected = Expected(Block(src.size()), src, form, shape, m, kLargeCount);
        OnEachPath([&] {
            unsigned char* const start = StartOf(block, offset);
            start[expected.size()] = 0xA5;
            const ZmStridedData to(start, 12);
            form.bulk(&to, &from, m, kLargeCount);
            EXPECT_EQ(memcmp(start, expected.data(), expected.size()), 0) << form.name << ", start at " << offset;
            EXPECT_EQ(start[expected.size()], 0xA5) << form.name << ", start at " << offset;
        });
    }
}

TEST(TransformTest, LargeArraysMayBeTransformedInPlace)
{
    Random random(9);
    const ZmMatrix m = random.Matrix();
    const Block original = RandomArray(random, kLargeCount, 12, 0, 3);
    const Shape shape = {"", 12, 12, 0, 0};
    const Block expected = Expected(original, original, kForms[2], shape, m, kLargeCount);
    OnEachPath([&] {
        Block block = original;
        Zm3DRotateVectorMany(reinterpret_cast<ZmVector*>(block.data()), m, reinterpret_cast<ZmVector*>(block.data()),
                             kLargeCount, 12);
        EXPECT_TRUE(block == expected);
    });
}

TEST(TransformTest, LargeFourComponentArraysEqualTheSingleFormsAtAnyStart)
{
    const int count = (24 << 20) / 16 + 3;
    Random random(10);
    const ZmMatrix m = random.Matrix();
    Block src = RandomArray(random, count, 12, 0, 3);
    const ZmStridedData from(src.data(), 12);
    const Shape shape = {"", 16, 12, 0, 0};
    const Block expected = Expected(Block(size_t(count) * 16), src, kForms[4], shape, m, count);
    Block block(expected.size() + 64);
    for (const size_t offset : {0, 16, 4}) {
        OnEachPath([&] {
            unsigned char* const start = StartOf(block, offset);
            const ZmStridedData to(start, 16);
            Zm3DMultiplyMatrixVector4Strided(&to, &from, m, count);
            EXPECT_EQ(memcmp(start, expected.data(), expected.size()), 0) << "start at " << offset;
        });
    }
}

}  // namespace
