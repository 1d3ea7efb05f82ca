// Links functions of the installed library and uses what they compute, and what the library does when it is loaded.
#include <ZmMath.h>

#include <cstdio>

int main()
{
    ZmMatrix move = ZmMatrix::Identity();
    move[3][0] = 2.0f;
    ZmMatrix back;
    Zm3DInverseMatrix(back, move);
    std::printf("ZmMath %s moves back by %g\n", ZMMATH_VERSION_STRING, double(back[3][0]));
    const bool started = ZmLog::GetLog().IsModule("ZmMath") != -1;
    return back[3][0] == -2.0f && started ? 0 : 1;
}
