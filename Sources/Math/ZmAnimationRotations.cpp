#include "Math/QuaternionKernels.h"
#include "Platform/FeatureWord.h"
#include "ZmInterpolation.h"

namespace zm {
namespace {

ZmQuaternion QuaternionAt(const char* p)
{
    ZmQuaternion q;
    memcpy(&q, p, sizeof(q));
    return q;
}

/// An array of sources that may be left out.
ZmStridedData OrAll(const ZmStridedData& data, const void* instead)
{
    return data.Ptr ? data : ZmStridedData(const_cast<void*>(instead), 0);
}

}  // namespace

void SlerpSingly(char* res, const char* a, const char* b, float t)
{
    const ZmQuaternion q = SlerpExact(QuaternionAt(a), QuaternionAt(b), t);
    memcpy(res, &q, sizeof(q));
}

void NlerpSingly(char* res, const char* a, const char* b, float t)
{
    const ZmQuaternion q = Nlerp(QuaternionAt(a), QuaternionAt(b), t);
    memcpy(res, &q, sizeof(q));
}

}  // namespace zm

void ZmSlerpStrided(const ZmStridedData& res, const ZmStridedData& a, const ZmStridedData& b, const ZmStridedData& t,
                    int count)
{
    zm::DispatchWide(zm::avx2::SlerpMany, zm::SlerpMany<zm::TwoInLanes>, zm::SlerpMany<zm::OneDouble>,
                     zm::ResultsOf(res, count), zm::SourcesOf(a, b, t));
}

void ZmNlerpStrided(const ZmStridedData& res, const ZmStridedData& a, const ZmStridedData& b, const ZmStridedData& t,
                    int count)
{
    zm::DispatchWide(zm::avx2::NlerpMany, zm::NlerpMany<zm::TwoInLanes>, zm::NlerpMany<zm::OneDouble>,
                     zm::ResultsOf(res, count), zm::SourcesOf(a, b, t));
}

void ZmNormalizeVectorStrided(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    zm::DispatchWide(zm::avx2::NormalizeVectors, zm::NormalizeMany<zm::TwoInLanes, 3>,
                     zm::NormalizeMany<zm::OneDouble, 3>, zm::PairOf(res, src, count));
}

void ZmNormalizeQuaternionStrided(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    zm::DispatchWide(zm::avx2::NormalizeQuaternions, zm::NormalizeMany<zm::TwoInLanes, 4>,
                     zm::NormalizeMany<zm::OneDouble, 4>, zm::PairOf(res, src, count));
}

void Zm3DQuaternionMultiplyStrided(const ZmStridedData& res, const ZmStridedData& a, const ZmStridedData& b, int count)
{
    zm::DispatchWide(zm::avx2::ProductMany, zm::ProductMany<zm::SseLanes>, zm::ProductMany<zm::ScalarLanes>,
                     zm::ResultsOf(res, count), zm::SourcesOf(a, b));
}

void ZmTransformMatrixStrided(const ZmStridedData& res, const ZmStridedData& positions, const ZmStridedData& rotations,
                              const ZmStridedData& scales, int count)
{
    constexpr ZmVector kNowhere(0, 0, 0), kUnscaled(1, 1, 1);
    constexpr ZmQuaternion kUnturned;
    const zm::StridedSources<3> sources =
        zm::SourcesOf(zm::OrAll(positions, &kNowhere), zm::OrAll(rotations, &kUnturned), zm::OrAll(scales, &kUnscaled));
    zm::DispatchWide(zm::avx2::TransformMany, zm::TransformMany<zm::SseLanes>, zm::TransformMany<zm::ScalarLanes>,
                     zm::ResultsOf(res, count), sources);
}
