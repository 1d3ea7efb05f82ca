#include "Math/MatrixFloats.h"
#include "Math/TransformKernels.h"
#include "Platform/FeatureWord.h"
#include "ZmMatrix.h"
#include "ZmStridedData.h"

namespace zm {
namespace {

template <class L, Kind kind>
void TransformOne(ZmVector* res, const ZmMatrix& m, const ZmVector* v)
{
    RowMatrix<L>(FloatsOf(m)).template Apply<kind>(v).Store3(res);
}

template <class L>
void TransformOne4(ZmVector4* res, const ZmMatrix& m, const ZmVector* v)
{
    RowMatrix<L>(FloatsOf(m)).template Apply<POINT>(v).Store4(res);
}

template <class L>
void TransformFull4(ZmVector4* res, const ZmMatrix& m, const ZmVector4* v)
{
    const RowMatrix<L> rows(FloatsOf(m));
    const L x = L::Splat(v->x), y = L::Splat(v->y), z = L::Splat(v->z), w = L::Splat(v->w);
    ((x * rows.row0 + y * rows.row1) + (z * rows.row2 + w * rows.row3)).Store4(res);
}

template <Kind kind>
void TransformScalar(StridedPair pair, const float* m)
{
    if (IsTight(pair)) {
        // The same loop with strides known at compile time.
        TransformSingly<kind>({pair.res, 12, pair.src, 12, pair.count}, m);
    } else {
        TransformSingly<kind>(pair, m);
    }
}

template <Kind kind>
void TransformSse(StridedPair pair, const float* m)
{
    if (IsTight(pair)) {
        TransformTight<SseLanes, kind>(pair, m);
    } else {
        TransformRows<SseLanes, kind, 3>(pair, m);
    }
}

void TransformPoints(const StridedPair& pair, const ZmMatrix& m)
{
    DispatchWide(avx2::TransformPoints, TransformSse<POINT>, TransformScalar<POINT>, pair, FloatsOf(m));
}

void RotateVectors(const StridedPair& pair, const ZmMatrix& m)
{
    DispatchWide(avx2::RotateVectors, TransformSse<ROTATE>, TransformScalar<ROTATE>, pair, FloatsOf(m));
}

}  // namespace
}  // namespace zm

void Zm3DMultiplyMatrixVector(ZmVector* res, const ZmMatrix& m, const ZmVector* v)
{
    zm::Dispatch(zm::TransformOne<zm::SseLanes, zm::POINT>, zm::TransformOne<zm::ScalarLanes, zm::POINT>, res, m, v);
}

void Zm3DMultiplyMatrixVectorMany(ZmVector* res, const ZmMatrix& m, const ZmVector* v, int count, int stride)
{
    zm::TransformPoints(zm::PairOf(res, stride, v, stride, count), m);
}

void Zm3DMultiplyMatrixVectorStrided(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m, int count)
{
    zm::TransformPoints(zm::PairOf(*res, *src, count), m);
}

void Zm3DMultiplyMatrixVector4(ZmVector4* res, const ZmMatrix& m, const ZmVector4* v)
{
    zm::Dispatch(zm::TransformFull4<zm::SseLanes>, zm::TransformFull4<zm::ScalarLanes>, res, m, v);
}

void Zm3DMultiplyMatrixVector4(ZmVector4* res, const ZmMatrix& m, const ZmVector* v)
{
    zm::Dispatch(zm::TransformOne4<zm::SseLanes>, zm::TransformOne4<zm::ScalarLanes>, res, m, v);
}

void Zm3DMultiplyMatrixVector4Strided(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m, int count)
{
    zm::DispatchWide(zm::avx2::TransformPoints4, zm::TransformRows<zm::SseLanes, zm::POINT, 4>,
                     zm::TransformRows<zm::ScalarLanes, zm::POINT, 4>, zm::PairOf(*res, *src, count), zm::FloatsOf(m));
}

void Zm3DRotateVector(ZmVector* res, const ZmMatrix& m, const ZmVector* v)
{
    zm::Dispatch(zm::TransformOne<zm::SseLanes, zm::ROTATE>, zm::TransformOne<zm::ScalarLanes, zm::ROTATE>, res, m, v);
}

void Zm3DRotateVectorMany(ZmVector* res, const ZmMatrix& m, const ZmVector* v, int count, int stride)
{
    zm::RotateVectors(zm::PairOf(res, stride, v, stride, count), m);
}

void Zm3DRotateVectorStrided(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m, int count)
{
    zm::RotateVectors(zm::PairOf(*res, *src, count), m);
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
