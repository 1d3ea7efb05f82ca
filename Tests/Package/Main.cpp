// Links functions of the installed library and uses what they compute.
#include <ZmMath.h>

#include <cstdio>

int main()
{
    ZmMatrix move = ZmMatrix::Identity();
    move[3][0] = 2.0f;
    ZmMatrix back;
    Zm3DInverseMatrix(back, move);
    std::printf("ZmMath %s moves back by %g\n", ZMMATH_VERSION_STRING, double(back[3][0]));
    return back[3][0] == -2.0f ? 0 : 1;
}
