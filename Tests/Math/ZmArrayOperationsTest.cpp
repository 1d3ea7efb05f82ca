#include "Support/Blocks.h"
#include "Support/Paths.h"

namespace {

struct Operands {
    ZmVector4 mul, add;
    float t;

    ZmVector Mul3() const { return {mul.x, mul.y, mul.z}; }
    ZmVector Add3() const { return {add.x, add.y, add.z}; }
};

// The expected component i of a result. Each rounds operation by operation, so comparisons are exact.

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

using Bytes = unsigned long;

const struct Operation {
    const char* name;
    int components;
    float (*component)(float a, float b, const Operands& o, int i);
    void (*run)(void* res, const void* a, const void* b, const Operands& o, int n, Bytes resStride, Bytes srcStride);
} kOperations[] = {
    {"InterpolateVectorArray", 3, Interpolated,
     [](void* res, const void* a, const void* b, const Operands& o, int n, Bytes r, Bytes s) {
         InterpolateVectorArray(res, a, b, o.t, n, r, s);
     }},
    {"InterpolateFloatArray", 1, Interpolated,
     [](void* res, const void* a, const void* b, const Operands& o, int n, Bytes, Bytes) {
         InterpolateFloatArray(res, a, b, o.t, n);
     }},
    {"MultiplyVectorArray", 3, Multiplied,
     [](void* res, const void* a, const void*, const Operands& o, int n, Bytes r, Bytes s) {
         MultiplyVectorArray(res, a, o.Mul3(), n, r, s);
     }},
    {"MultiplyVector2Array", 2, Multiplied,
     [](void* res, const void* a, const void*, const Operands& o, int n, Bytes r, Bytes s) {
         MultiplyVector2Array(res, a, {o.mul.x, o.mul.y}, n, r, s);
     }},
    {"MultiplyVector4Array", 4, Multiplied,
     [](void* res, const void* a, const void*, const Operands& o, int n, Bytes r, Bytes s) {
         MultiplyVector4Array(res, a, o.mul, n, r, s);
     }},
    {"MultiplyAddVectorArray", 3, MultipliedAndAdded,
     [](void* res, const void* a, const void*, const Operands& o, int n, Bytes r, Bytes s) {
         MultiplyAddVectorArray(res, a, o.Mul3(), o.Add3(), n, r, s);
     }},
    {"MultiplyAddVector4Array", 4, MultipliedAndAdded,
     [](void* res, const void* a, const void*, const Operands& o, int n, Bytes r, Bytes s) {
         MultiplyAddVector4Array(res, a, o.mul, o.add, n, r, s);
     }},
};

/// `res` with the expected results written over its elements, the first at `offset`.
Block Expected(Block res, size_t offset, Bytes resStride, const Block& a, const Block& b, Bytes srcStride,
               const Operation& operation, const Operands& o, int count)
{
    for (int i = 0; i < count; ++i) {
        for (int j = 0; j < operation.components; ++j) {
            float fromA, fromB;
            memcpy(&fromA, &a[size_t(i) * srcStride + size_t(j) * 4], 4);
            memcpy(&fromB, &b[size_t(i) * srcStride + size_t(j) * 4], 4);
            const float value = operation.component(fromA, fromB, o, j);
            memcpy(&res[offset + size_t(i) * resStride + size_t(j) * 4], &value, 4);
        }
    }
    return res;
}

/// Runs check(operation, operands, resStride, srcStride) over operations and strides.
template <class Check>
void OnAllOperations(Random& random, Check check)
{
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        const Bytes tight = Bytes(operation.components) * 4;
        for (const Bytes resGap : {0, 4, 17}) {
            for (const Bytes srcGap : {0, 1, 4, 16}) {
                if (tight > 4 || resGap + srcGap == 0) {
                    check(operation, Operands{random.Vector4(), random.Vector4(), random.Float(2)}, tight + resGap,
                          tight + srcGap);
                }
            }
        }
    }
}

TEST(ZmArrayOperationsTest, OperationsEqualTheirFormulaAndKeepEveryOtherByte)
{
    OnEachPath(1, [](Random& random) {
        OnAllOperations(random, [&](const Operation& operation, const Operands& o, Bytes resStride, Bytes srcStride) {
            const size_t floats = size_t(operation.components);
            for (int count = -1; count <= 20; ++count) {
                const size_t offset = kMargin + size_t(random.Int(0, 15));
                const Block a = RandomArray(random, count, srcStride, 0, floats),
                            b = RandomArray(random, count, srcStride, 0, floats);
                Block res = RandomBytes(random, offset + SpanOf(count, resStride, 4 * floats) + kMargin);
                const Block expected = Expected(res, offset, resStride, a, b, srcStride, operation, o, count);
                operation.run(&res[offset], a.data(), b.data(), o, count, resStride, srcStride);
                EXPECT_EQ(FirstDifference(res, expected), -1)
                    << "strides " << resStride << " " << srcStride << ", count " << count;
            }
        });
    });
}

TEST(ZmArrayOperationsTest, TheResultMayBeASource)
{
    OnEachPath(1, [](Random& random) {
        OnAllOperations(random, [&](const Operation& operation, const Operands& o, Bytes, Bytes stride) {
            const size_t floats = size_t(operation.components);
            const Block a = RandomArray(random, 9, stride, 0, floats), b = RandomArray(random, 9, stride, 0, floats);
            Block toA = a, toB = b;
            operation.run(toA.data(), toA.data(), b.data(), o, 9, stride, stride);
            EXPECT_EQ(FirstDifference(toA, Expected(a, 0, stride, a, b, stride, operation, o, 9)), -1);
            if (operation.component == Interpolated) {
                operation.run(toB.data(), a.data(), toB.data(), o, 9, stride, stride);
                EXPECT_EQ(FirstDifference(toB, Expected(b, 0, stride, a, b, stride, operation, o, 9)), -1);
            }
        });
    });
}

}  // namespace
