#include "Support/Blocks.h"
#include "Support/Paths.h"

namespace {

/// The operations, each with the float that component `i` of a result must be. All round as one would by
/// hand, operation by operation, so that the comparison is exact.
struct Operands {
    ZmVector4 mul, add;
    float t;
};

struct Operation {
    const char* name;
    int components;
    void (*run)(void* res, const void* a, const void* b, const Operands& o, int count, unsigned long resStride,
                unsigned long srcStride);
    float (*expected)(float a, float b, const Operands& o, int i);
};

ZmVector First3(const ZmVector4& v)
{
    return {v.x, v.y, v.z};
}

float Interpolated(float a, float b, const Operands& o, int)
{
    return a + (b - a) * o.t;
}

float Multiplied(float a, float, const Operands& o, int i)
{
    return a * (&o.mul.x)[i];
}

float MultipliedAndAdded(float a, float, const Operands& o, int i)
{
    return a * (&o.mul.x)[i] + (&o.add.x)[i];
}

const Operation kOperations[] = {
    {"InterpolateVectorArray", 3,
     [](void* res, const void* a, const void* b, const Operands& o, int n, unsigned long r, unsigned long s) {
         InterpolateVectorArray(res, a, b, o.t, n, r, s);
     },
     Interpolated},
    {"MultiplyVectorArray", 3,
     [](void* res, const void* a, const void*, const Operands& o, int n, unsigned long r, unsigned long s) {
         MultiplyVectorArray(res, a, First3(o.mul), n, r, s);
     },
     Multiplied},
    {"MultiplyVector2Array", 2,
     [](void* res, const void* a, const void*, const Operands& o, int n, unsigned long r, unsigned long s) {
         MultiplyVector2Array(res, a, {o.mul.x, o.mul.y}, n, r, s);
     },
     Multiplied},
    {"MultiplyVector4Array", 4,
     [](void* res, const void* a, const void*, const Operands& o, int n, unsigned long r, unsigned long s) {
         MultiplyVector4Array(res, a, o.mul, n, r, s);
     },
     Multiplied},
    {"MultiplyAddVectorArray", 3,
     [](void* res, const void* a, const void*, const Operands& o, int n, unsigned long r, unsigned long s) {
         MultiplyAddVectorArray(res, a, First3(o.mul), First3(o.add), n, r, s);
     },
     MultipliedAndAdded},
    {"MultiplyAddVector4Array", 4,
     [](void* res, const void* a, const void*, const Operands& o, int n, unsigned long r, unsigned long s) {
         MultiplyAddVector4Array(res, a, o.mul, o.add, n, r, s);
     },
     MultipliedAndAdded},
};

Operands RandomOperands(Random& random)
{
    return {random.Vector4(), random.Vector4(), random.Float(-1, 2)};
}

float FloatAt(const Block& block, size_t at)
{
    float value;
    memcpy(&value, &block[at], 4);
    return value;
}

/// `res` with what the operation gives written over its elements.
Block Expected(Block res, size_t resOffset, unsigned long resStride, const Block& a, const Block& b,
               unsigned long srcStride, const Operation& operation, const Operands& o, int count)
{
    for (int i = 0; i < count; ++i) {
        for (int j = 0; j < operation.components; ++j) {
            const size_t from = size_t(i) * srcStride + size_t(j) * 4;
            const float value = operation.expected(FloatAt(a, from), FloatAt(b, from), o, j);
            memcpy(&res[resOffset + size_t(i) * resStride + size_t(j) * 4], &value, 4);
        }
    }
    return res;
}

TEST(ArrayOperationsTest, OperationsEqualTheirFormulaAndKeepEveryOtherByte)
{
    OnEachPath([] {
        Random random(1);
        for (const Operation& operation : kOperations) {
            const unsigned long tight = 4ul * unsigned(operation.components);
            for (const unsigned long resStride : {tight, tight + 4, tight + 17}) {
                for (const unsigned long srcStride : {tight, tight + 1, tight + 16}) {
                    for (int count = -1; count <= 20; ++count) {
                        const Operands o = RandomOperands(random);
                        const Block a = RandomArray(random, count, srcStride, 0, tight / 4);
                        const Block b = RandomArray(random, count, srcStride, 0, tight / 4);
                        Block res = RandomBytes(random, kMargin + SpanOf(count, resStride, tight) + kMargin);
                        const Block expected = Expected(res, kMargin, resStride, a, b, srcStride, operation, o, count);
                        operation.run(&res[kMargin], a.data(), b.data(), o, count, resStride, srcStride);
                        ASSERT_EQ(FirstDifference(res, expected), -1) << operation.name << ", strides " << resStride
                                                                      << " and " << srcStride << ", count " << count;
                    }
                }
            }
        }
    });
}

TEST(ArrayOperationsTest, TheResultMayBeASource)
{
    OnEachPath([] {
        Random random(2);
        for (const Operation& operation : kOperations) {
            const unsigned long tight = 4ul * unsigned(operation.components);
            for (const unsigned long stride : {tight, tight + 12}) {
                const Operands o = RandomOperands(random);
                const Block a = RandomArray(random, 9, stride, 0, tight / 4),
                            b = RandomArray(random, 9, stride, 0, tight / 4);
                Block toA = a, toB = b;
                operation.run(toA.data(), toA.data(), b.data(), o, 9, stride, stride);
                EXPECT_EQ(FirstDifference(toA, Expected(a, 0, stride, a, b, stride, operation, o, 9)), -1)
                    << operation.name;
                if (operation.expected == Interpolated) {
                    operation.run(toB.data(), a.data(), toB.data(), o, 9, stride, stride);
                    EXPECT_EQ(FirstDifference(toB, Expected(b, 0, stride, a, b, stride, operation, o, 9)), -1);
                }
            }
        }
    });
}

TEST(ArrayOperationsTest, FloatsInterpolateAtAnyCountAndAddress)
{
    OnEachPath([] {
        Random random(3);
        for (int count = -1; count <= 40; ++count) {
            for (const size_t offset : {0, 4, 1}) {
                const Block a = RandomArray(random, count, 4, offset, 1), b = RandomArray(random, count, 4, offset, 1);
                const float t = random.Float(-1, 2);
                Block res = RandomBytes(random, offset + SpanOf(count, 4, 4) + kMargin);
                Block expected = res;
                for (int i = 0; i < count; ++i) {
                    const float from = FloatAt(a, offset + size_t(i) * 4), to = FloatAt(b, offset + size_t(i) * 4);
                    const float value = from + (to - from) * t;
                    memcpy(&expected[offset + size_t(i) * 4], &value, 4);
                }
                InterpolateFloatArray(&res[offset], a.data() + offset, b.data() + offset, t, count);
                EXPECT_EQ(FirstDifference(res, expected), -1) << "count " << count << ", offset " << offset;
            }
        }
    });
}

}  // namespace
