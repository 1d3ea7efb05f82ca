#include "ZmTrigonometry.h"

#include "Math/SinCos.h"
#include "Math/SineTable.h"

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

}  // namespace zm

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
