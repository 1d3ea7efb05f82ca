// The C library's functions of floats in a loop.

#include "../Angles.h"
#include "../Harness.h"

#include <math.h>

namespace bench {
namespace {

template <float function(float), float (Angles::*arguments)[kAngles]>
void Loop(const Work& w)
{
    const Angles& in = *static_cast<const Angles*>(w.src);
    for (int i = 0; i < w.count; ++i) {
        static_cast<float*>(w.dst)[i] = function((in.*arguments)[i]);
    }
}

void Directions(const Work& w)
{
    const Angles& in = *static_cast<const Angles*>(w.src);
    for (int i = 0; i < w.count; ++i) {
        static_cast<float*>(w.dst)[i] = atan2f(in.y[i], in.x[i]);
    }
}

constexpr Entry kEntries[] = {
    {"Trigonometry/sine", Loop<sinf, &Angles::angles>},
    {"Trigonometry/cosine", Loop<cosf, &Angles::angles>},
    {"Trigonometry/tangent", Loop<tanf, &Angles::angles>},
    {"Trigonometry/arc-sine", Loop<asinf, &Angles::units>},
    {"Trigonometry/arc-cosine", Loop<acosf, &Angles::units>},
    {"Trigonometry/arc-tangent", Loop<atanf, &Angles::angles>},
    {"Trigonometry/direction", Directions},
    {"Trigonometry/sines", Loop<sinf, &Angles::angles>},
    {"Trigonometry/cosines", Loop<cosf, &Angles::angles>},
    {"Trigonometry/tangents", Loop<tanf, &Angles::angles>},
    {"Trigonometry/arc-sines", Loop<asinf, &Angles::units>},
    {"Trigonometry/arc-cosines", Loop<acosf, &Angles::units>},
    {"Trigonometry/arc-tangents", Loop<atanf, &Angles::angles>},
    {"Trigonometry/directions", Directions},
};

}  // namespace

extern const Contender kCFunctions;
constexpr Contender kCFunctions{"C library", Role::PEER, kEntries};

}  // namespace bench
