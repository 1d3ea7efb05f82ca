// One matrix or quaternion at a time, over arrays in cache.

#include "Each.h"
#include "Families.h"
#include "Inputs.h"

#include "ZmDecomposition.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

namespace bench {
namespace {

void Prepare(Work& w)
{
    w.src = &RandomOperands();
}

/// Chooses between q and -q, which are the same rotation: the one whose largest component is positive.
void OneSign(float* q)
{
    const float* largest = std::max_element(q, q + 4, [](float l, float r) { return std::fabs(l) < std::fabs(r); });
    if (*largest < 0) {
        std::transform(q, q + 4, q, [](float f) { return -f; });
    }
}

/// The axes of a stretch have no defined order or sign: replaces scale and uRot (seven floats) by the six elements of
/// the stretch that they represent.
void OneStretch(float* full)
{
    OneSign(full);
    float* scale = full + 7;
    const float x = full[10], y = full[11], z = full[12], w = full[13];
    const float u[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y)},
                           {2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x)},
                           {2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y)}};
    float stretch[7] = {};
    int element = 0;
    for (int i = 0; i < 3; ++i) {
        for (int j = i; j < 3; ++j) {
            stretch[element++] =
                u[i][0] * scale[0] * u[j][0] + u[i][1] * scale[1] * u[j][1] + u[i][2] * scale[2] * u[j][2];
        }
    }
    std::copy(std::begin(stretch), std::end(stretch), scale);
}

/// The error that ZmVector::Normalize leaves in rotations built with it.
constexpr double kApproximateNormalize = 2e-3;

constexpr Task kTasks[] = {
    {"Matrices/product", 64, 0, Prepare, {kOperands}, {1.25}},
    {"Matrices/affine-product", 64, 0, Prepare, {kOperands}, {1.00}},
    {"Matrices/affine-inverse", 64, 0, Prepare, {kOperands}, {0.90}},
    {"Matrices/determinant", 4, 0, Prepare, {kOperands}, {1.50}},
    {"Matrices/transpose", 64, 0, Prepare, {kOperands}, {1.50}},
    {"Matrices/from-euler", 64, 0, Prepare, {kOperands}, {1.00}},
    {"Matrices/from-axis-angle", 64, 0, Prepare, {kOperands}, {1.00}, kApproximateNormalize},
    {"Matrices/interpolate", 64, 0, Prepare, {kOperands}, {}, kApproximateNormalize},
    {"Quaternions/from-matrix", 16, 0, Prepare, {kOperands}, {1.10}, 1e-4, OneSign},
    {"Quaternions/to-matrix", 64, 0, Prepare, {kOperands}, {1.10}},
    {"Quaternions/slerp", 16, 0, Prepare, {kOperands}, {1.00}, 1e-4, OneSign},
    {"Decompose/quick", 40, 0, Prepare, {kOperands}, {0.70}, kApproximateNormalize, OneSign},
    {"Decompose/polar", 16, 0, Prepare, {kOperands}, {0.50}, 1e-4, OneSign},
    {"Decompose/total", 56, 0, Prepare, {kOperands}, {0.50}, 1e-4, OneStretch},
};

constexpr Task kInline[] = {
    {"Vectors/dot", 4, 0, Prepare, {kOperands}, {}},
    {"Vectors/cross", 12, 0, Prepare, {kOperands}, {}},
    {"Vectors/length", 4, 0, Prepare, {kOperands}, {}},
    {"Vectors/normalize", 12, 0, Prepare, {kOperands}, {}},
    {"Vectors/normalize-approximately", 12, 0, Prepare, {kOperands}, {}, kApproximateNormalize},
    {"Vectors/transform-point", 12, 0, Prepare, {kOperands}, {}},
    {"Vectors/rotate", 12, 0, Prepare, {kOperands}, {}},
    {"Vectors/look-at", 64, 0, Prepare, {kOperands}, {}},
    {"Vectors/perspective", 64, 0, Prepare, {kOperands}, {}},
    {"Matrices/product", 64, 0, Prepare, {kOperands}, {}},
    {"Matrices/affine-product", 64, 0, Prepare, {kOperands}, {}},
    {"Matrices/affine-inverse", 64, 0, Prepare, {kOperands}, {}},
    {"Matrices/determinant", 4, 0, Prepare, {kOperands}, {}},
    {"Matrices/transpose", 64, 0, Prepare, {kOperands}, {}},  // its chain waits for all of a result: EachWhole()
    {"Matrices/from-euler", 64, 0, Prepare, {kOperands}, {}},
    {"Matrices/from-axis-angle", 64, 0, Prepare, {kOperands}, {}},
    {"Matrices/interpolate", 64, 0, Prepare, {kOperands}, {}},
    {"Quaternions/from-matrix", 16, 0, Prepare, {kOperands}, {}, 1e-4, OneSign},
    {"Quaternions/to-matrix", 64, 0, Prepare, {kOperands}, {}},
    {"Quaternions/unit-to-matrix", 64, 0, Prepare, {kOperands}, {}},
    {"Quaternions/slerp", 16, 0, Prepare, {kOperands}, {}, 1e-4, OneSign},
};

/// Layout of QuickParts and FullParts in Parts.h.
struct Parts {
    ZmQuaternion quat;
    ZmVector pos, scale;
};
struct FullParts : Parts {
    ZmQuaternion uRot;
};

const ZmMatrix& Matrix(const Operands::Matrices& operands, int i)
{
    return As<ZmMatrix>(operands, i);
}

const ZmQuaternion& Quaternion(const Operands::Quaternions& operands, int i)
{
    return As<ZmQuaternion>(operands, i);
}

void Product(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) {
        Zm3DMultiplyMatrix4(res, Matrix(in.a, i), Matrix(in.b, i));
    });
}

void AffineProduct(const Work& w)
{
    Each<ZmMatrix>(
        w, [](ZmMatrix& res, const Operands& in, int i) { Zm3DMultiplyMatrix(res, Matrix(in.a, i), Matrix(in.b, i)); });
}

void AffineInverse(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) { Zm3DInverseMatrix(res, Matrix(in.a, i)); });
}

void Determinant(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) { res = Zm3DMatrixDeterminant(Matrix(in.a, i)); });
}

void Transpose(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) { Zm3DTransposeMatrix(res, Matrix(in.a, i)); });
}

void FromEuler(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) {
        Zm3DMatrixFromEulerAngles(res, in.euler[i][0], in.euler[i][1], in.euler[i][2]);
    });
}

void FromAxisAngle(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) {
        Zm3DMatrixFromRotation(res, As<ZmVector>(in.axisAngle[i], 0), in.axisAngle[i][3]);
    });
}

void Interpolate(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) {
        Zm3DInterpolateMatrix(in.t[i], res, Matrix(in.a, i), Matrix(in.b, i));
    });
}

void FromMatrix(const Work& w)
{
    Each<ZmQuaternion>(w, [](ZmQuaternion& res, const Operands& in, int i) {
        res = Zm3DQuaternionFromMatrix(Matrix(in.rotation, i));
    });
}

void ToMatrix(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) { Quaternion(in.p, i).ToMatrix(res); });
}

void Slerps(const Work& w)
{
    Each<ZmQuaternion>(w, [](ZmQuaternion& res, const Operands& in, int i) {
        res = Slerp(in.t[i], Quaternion(in.p, i), Quaternion(in.q, i));
    });
}

void Quick(const Work& w)
{
    Each<Parts>(w, [](Parts& res, const Operands& in, int i) {
        Zm3DDecomposeMatrix(Matrix(in.a, i), res.quat, res.pos, res.scale);
    });
}

void Polar(const Work& w)
{
    Each<ZmQuaternion>(w, [](ZmQuaternion& res, const Operands& in, int i) {
        Zm3DDecomposeMatrixTotalPtr(Matrix(in.stretched, i), &res, nullptr, nullptr, nullptr);
    });
}

void Total(const Work& w)
{
    Each<FullParts>(w, [](FullParts& res, const Operands& in, int i) {
        Zm3DDecomposeMatrixTotal(Matrix(in.stretched, i), res.quat, res.pos, res.scale, res.uRot);
    });
}

constexpr Entry kEntries[] = {
    {"Matrices/product", Product},
    {"Matrices/affine-product", AffineProduct},
    {"Matrices/affine-inverse", AffineInverse},
    {"Matrices/determinant", Determinant},
    {"Matrices/transpose", Transpose},
    {"Matrices/from-euler", FromEuler},
    {"Matrices/from-axis-angle", FromAxisAngle},
    {"Matrices/interpolate", Interpolate},
    {"Quaternions/from-matrix", FromMatrix},
    {"Quaternions/to-matrix", ToMatrix},
    {"Quaternions/slerp", Slerps},
    {"Decompose/quick", Quick},
    {"Decompose/polar", Polar},
    {"Decompose/total", Total},
};

}  // namespace

constexpr Tasks kSingleTasks{kTasks};
constexpr Tasks kInlineTasks{kInline};
constexpr Contender kSingles{"ZmMath", Role::OURS, kEntries};

}  // namespace bench
