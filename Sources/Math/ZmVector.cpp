#include "ZmVector.h"

#include "Math/Normalize.h"
#include "ZmTrigonometry.h"

namespace {

// Constant-initialised, so that they are available before any code runs.
const ZmVector kAxisX(1, 0, 0), kAxisY(0, 1, 0), kAxisZ(0, 0, 1), kAxis0(0, 0, 0), kAxis1(1, 1, 1);

}  // namespace

const ZmVector& ZmVector::axisX()
{
    return kAxisX;
}

const ZmVector& ZmVector::axisY()
{
    return kAxisY;
}

const ZmVector& ZmVector::axisZ()
{
    return kAxisZ;
}

const ZmVector& ZmVector::axis0()
{
    return kAxis0;
}

const ZmVector& ZmVector::axis1()
{
    return kAxis1;
}

void ZmVector::Normalize()
{
    *this = zm::NormalizedApproximately(*this);
}

ZmVector& ZmVector::operator=(const ZmCompressedVector& c)
{
    const float level = Tcos(c.xa);
    return *this = ZmVector(Tsin(c.ya) * level, -Tsin(c.xa), Tcos(c.ya) * level);
}

float Length(const ZmVector& v)
{
    return sqrtf(Dot(v, v));
}
