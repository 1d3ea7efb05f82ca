#include "ZmPlane.h"

#include "Math/Normalize.h"

void ZmPlane::Create(const ZmVector& n, const ZmVector& p)
{
    Normal = n;
    D = -Dot(n, p);
}

void ZmPlane::Create(const ZmVector& a, const ZmVector& b, const ZmVector& c)
{
    Create(zm::NormalizedExactly(Cross(b - a, c - a)), a);
}
