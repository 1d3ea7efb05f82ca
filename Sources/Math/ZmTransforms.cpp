#include "Math/MatrixFloats.h"
#include "Math/TransformKernels.h"
#include "Platform/FeatureWord.h"
#include "ZmMatrix.h"
#include "ZmStridedData.h"

namespace zm {
namespace {

Span MakeSpan(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    return {static_cast<char*>(res.Ptr), ptrdiff_t(res.Stride), static_cast<const char*>(src.Ptr),
            ptrdiff_t(src.Stride), count};
}

Span MakeSpan(ZmVector* res, const ZmVector* src, int count, int stride)
{
    return {reinterpret_cast<char*>(res), stride, reinterpret_cast<const char*>(src), stride, count};
}

template <class L, Kind kind>
void TransformOne(ZmVector* res, const ZmMatrix& m, const ZmVector* v)
{
    RowMatrix<L>(FloatsOf(m)).template Apply<kind>(v).Store3(res);
}

template <class L>
void TransformOne4(ZmVector4* res, const ZmMatrix& m, const ZmVector* v)
{
    RowMatrix<L>(FloatsOf(m)).template Apply<kPoint>(v).Store4(res);
}

template <class L>
void TransformFull4(ZmVector4* res, const ZmMatrix& m, const ZmVector4* v)
{
    const RowMatrix<L> rows(FloatsOf(m));
    const L x = L::Splat(v->x), y = L::Splat(v->y), z = L::Splat(v->z), w = L::Splat(v->w);
    ((x * rows.row0 + y * rows.row1) + (z * rows.row2 + w * rows.row3)).Store4(res);
}

template <Kind kind>
void TransformScalar(Span span, const float* m)
{
    if (IsTight(span)) {
        // The same loop with strides known at compile time.
        TransformSingly<kind>({span.out, 12, span.in, 12, span.count}, m);
    } else {
        TransformSingly<kind>(span, m);
    }
}

template <Kind kind>
void TransformSse(Span span, const float* m)
{
    if (IsTight(span)) {
        TransformTight<SseLanes, kind>(span, m);
    } else {
        TransformRows<SseLanes, kind, 3>(span, m);
    }
}

void TransformPoints(const Span& span, const ZmMatrix& m)
{
    DispatchWide(avx2::TransformPoints, TransformSse<kPoint>, TransformScalar<kPoint>, span, FloatsOf(m));
}

void RotateVectors(const Span& span, const ZmMatrix& m)
{
    DispatchWide(avx2::RotateVectors, TransformSse<kRotate>, TransformScalar<kRotate>, span, FloatsOf(m));
}

}  // namespace
}  // namespace zm

using namespace zm;

void Zm3DMultiplyMatrixVector(ZmVector* res, const ZmMatrix& m, const ZmVector* v)
{
    Dispatch(TransformOne<SseLanes, kPoint>, TransformOne<ScalarLanes, kPoint>, res, m, v);
}

void Zm3DMultiplyMatrixVectorMany(ZmVector* res, const ZmMatrix& m, const ZmVector* v, int count, int stride)
{
    TransformPoints(MakeSpan(res, v, count, stride), m);
}

void Zm3DMultiplyMatrixVectorStrided(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m, int count)
{
    TransformPoints(MakeSpan(*res, *src, count), m);
}

void Zm3DMultiplyMatrixVector4(ZmVector4* res, const ZmMatrix& m, const ZmVector4* v)
{
    Dispatch(TransformFull4<SseLanes>, TransformFull4<ScalarLanes>, res, m, v);
}

void Zm3DMultiplyMatrixVector4(ZmVector4* res, const ZmMatrix& m, const ZmVector* v)
{
    Dispatch(TransformOne4<SseLanes>, TransformOne4<ScalarLanes>, res, m, v);
}

void Zm3DMultiplyMatrixVector4Strided(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m, int count)
{
    DispatchWide(avx2::TransformPoints4, TransformRows<SseLanes, kPoint, 4>, TransformRows<ScalarLanes, kPoint, 4>,
                 MakeSpan(*res, *src, count), FloatsOf(m));
}

void Zm3DRotateVector(ZmVector* res, const ZmMatrix& m, const ZmVector* v)
{
    Dispatch(TransformOne<SseLanes, kRotate>, TransformOne<ScalarLanes, kRotate>, res, m, v);
}

void Zm3DRotateVectorMany(ZmVector* res, const ZmMatrix& m, const ZmVector* v, int count, int stride)
{
    RotateVectors(MakeSpan(res, v, count, stride), m);
}

void Zm3DRotateVectorStrided(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m, int count)
{
    RotateVectors(MakeSpan(*res, *src, count), m);
}

ZmVector Rotate(const ZmMatrix& m, const ZmVector& v)
{
    ZmVector res;
    Zm3DRotateVector(&res, m, &v);
    return res;
}

void ZmVector::Rotate(const ZmMatrix& m)
{
    Zm3DRotateVector(this, m, this);
}
