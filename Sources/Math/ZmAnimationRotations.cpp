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

/// An array, or the same for all elements if there is none.
StridedSource SourceOr(const ZmStridedData& data, const void* same)
{
    return data.Ptr ? SourceOf(data) : StridedSource{static_cast<const char*>(same), 0};
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
                     zm::ResultsOf(res, count), zm::StridedSources{zm::SourceOf(a), zm::SourceOf(b), zm::SourceOf(t)});
}

void ZmNlerpStrided(const ZmStridedData& res, const ZmStridedData& a, const ZmStridedData& b, const ZmStridedData& t,
                    int count)
{
    zm::DispatchWide(zm::avx2::NlerpMany, zm::NlerpMany<zm::TwoInLanes>, zm::NlerpMany<zm::OneDouble>,
                     zm::ResultsOf(res, count), zm::StridedSources{zm::SourceOf(a), zm::SourceOf(b), zm::SourceOf(t)});
}

void ZmNormalizeVectorStrided(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    zm::DispatchWide(zm::avx2::NormalizeVectors, zm::NormalizeMany<zm::TwoInLanes, 3>,
                     zm::NormalizeMany<zm::OneDouble, 3>, zm::ResultsOf(res, count),
                     zm::StridedSources{zm::SourceOf(src), {}, {}});
}

void ZmNormalizeQuaternionStrided(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    zm::DispatchWide(zm::avx2::NormalizeQuaternions, zm::NormalizeMany<zm::TwoInLanes, 4>,
                     zm::NormalizeMany<zm::OneDouble, 4>, zm::ResultsOf(res, count),
                     zm::StridedSources{zm::SourceOf(src), {}, {}});
}

void Zm3DQuaternionMultiplyStrided(const ZmStridedData& res, const ZmStridedData& a, const ZmStridedData& b, int count)
{
    zm::DispatchWide(zm::avx2::ProductMany, zm::ProductMany<zm::SseLanes>, zm::ProductMany<zm::ScalarLanes>,
                     zm::ResultsOf(res, count), zm::StridedSources{zm::SourceOf(a), zm::SourceOf(b), {}});
}

void ZmTransformMatrixStrided(const ZmStridedData& res, const ZmStridedData& positions, const ZmStridedData& rotations,
                              const ZmStridedData& scales, int count)
{
    constexpr ZmVector kNowhere(0, 0, 0), kUnscaled(1, 1, 1);
    constexpr ZmQuaternion kUnturned;
    const zm::StridedSources sources = {zm::SourceOr(positions, &kNowhere), zm::SourceOr(rotations, &kUnturned),
                                        zm::SourceOr(scales, &kUnscaled)};
    zm::DispatchWide(zm::avx2::TransformMany, zm::TransformMany<zm::SseLanes>, zm::TransformMany<zm::ScalarLanes>,
                     zm::ResultsOf(res, count), sources);
}
