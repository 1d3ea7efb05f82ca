#include "ZmTrigonometry.h"

#include "Math/SineTable.h"
#include "Math/TrigonometryKernels.h"
#include "Platform/FeatureWord.h"
#include "ZmInline.h"

#include <emmintrin.h>

namespace zm {

float g_SineTable[kSineUnits + kSineQuarter];

void BuildSineTable()
{
    // 2 pi / 16384 in single precision; the table's values depend on this constant.
    constexpr float step = 0.00038349521f;
    for (int i = 0; i < kSineUnits; ++i) {
        g_SineTable[i] = float(SinCos(i * double(step)).sine);
    }
    for (int i = 0; i < kSineQuarter; ++i) {
        g_SineTable[kSineUnits + i] = g_SineTable[i];
    }
}

void SineCosineOfLarge(double angle, double* sine, double* cosine)
{
    const SinCos turn(angle);
    *sine = turn.sine;
    *cosine = turn.cosine;
}

namespace {

using ManyForm = void (*)(const StridedPair&);

template <class F>
void Many(ManyForm avx2, const ZmStridedData& res, const ZmStridedData& src, int count)
{
    DispatchWide(avx2, OfMany<F, DoubleLanes>, OfMany<F, SingleDouble>, PairOf(res, src, count));
}

StridedOther OtherOf(const ZmStridedData& array)
{
    return {static_cast<char*>(array.Ptr), ptrdiff_t(array.Stride)};
}

}  // namespace
}  // namespace zm

float ZmSin(float angle)
{
    return zm::DispatchAvx2(zm::avx2::Sine, zm::OfOne<zm::SineOf>, angle);
}

float ZmCos(float angle)
{
    return zm::DispatchAvx2(zm::avx2::Cosine, zm::OfOne<zm::CosineOf>, angle);
}

float ZmTan(float angle)
{
    return zm::DispatchAvx2(zm::avx2::Tangent, zm::OfOne<zm::TangentOf>, angle);
}

void ZmSinCos(float angle, float* sine, float* cosine)
{
    const zm::SinCos turn(angle);
    *sine = float(turn.sine);
    *cosine = float(turn.cosine);
}

float ZmAsin(float x)
{
    return zm::DispatchAvx2(zm::avx2::Arcsine, zm::OfOne<zm::ArcsineOf>, x);
}

float ZmAcos(float x)
{
    return zm::DispatchAvx2(zm::avx2::Arccosine, zm::OfOne<zm::ArccosineOf>, x);
}

float ZmAtan(float x)
{
    return zm::DispatchAvx2(zm::avx2::Arctangent, zm::OfOne<zm::ArctangentOf>, x);
}

float ZmAtan2(float y, float x)
{
    return zm::DispatchAvx2(zm::avx2::DirectionAngle, zm::ArctangentOfOne, y, x);
}

void ZmSinStrided(const ZmStridedData& res, const ZmStridedData& angles, int count)
{
    zm::Many<zm::SineOf>(zm::avx2::Sines, res, angles, count);
}

void ZmCosStrided(const ZmStridedData& res, const ZmStridedData& angles, int count)
{
    zm::Many<zm::CosineOf>(zm::avx2::Cosines, res, angles, count);
}

void ZmTanStrided(const ZmStridedData& res, const ZmStridedData& angles, int count)
{
    zm::Many<zm::TangentOf>(zm::avx2::Tangents, res, angles, count);
}

void ZmSinCosStrided(const ZmStridedData& sines, const ZmStridedData& cosines, const ZmStridedData& angles, int count)
{
    zm::DispatchWide(zm::avx2::SinesAndCosines, zm::SinCosOfMany<zm::DoubleLanes>, zm::SinCosOfMany<zm::SingleDouble>,
                     zm::PairOf(sines, angles, count), zm::OtherOf(cosines));
}

void ZmAsinStrided(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    zm::Many<zm::ArcsineOf>(zm::avx2::Arcsines, res, src, count);
}

void ZmAcosStrided(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    zm::Many<zm::ArccosineOf>(zm::avx2::Arccosines, res, src, count);
}

void ZmAtanStrided(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    zm::Many<zm::ArctangentOf>(zm::avx2::Arctangents, res, src, count);
}

void ZmAtan2Strided(const ZmStridedData& res, const ZmStridedData& y, const ZmStridedData& x, int count)
{
    zm::DispatchWide(zm::avx2::DirectionAngles, zm::ArctangentsOfMany<zm::DoubleLanes>,
                     zm::ArctangentsOfMany<zm::SingleDouble>, zm::PairOf(res, y, count), zm::OtherOf(x));
}

float Tsin(int angle)
{
    return zm::g_SineTable[angle & (zm::kSineUnits - 1)];
}

float Tcos(int angle)
{
    return zm::g_SineTable[(angle & (zm::kSineUnits - 1)) + zm::kSineQuarter];
}

int radToAngle(float radians)
{
    return _mm_cvtss_si32(_mm_set_ss(radians * 2607.5945f));
}
