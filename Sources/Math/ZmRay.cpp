#include "ZmRay.h"

void ZmRay::Transform(ZmRay& dest, const ZmMatrix& m) const
{
    Zm3DMultiplyMatrixVector(&dest.Origin, m, &Origin);
    Zm3DRotateVector(&dest.Direction, m, &Direction);
}
