// Sines, tangents and arc functions, one at a time and many in one call.

#include "Angles.h"
#include "Families.h"
#include "Inputs.h"

#include "ZmTrigonometry.h"

#include <memory>

namespace bench {
namespace {

std::unique_ptr<Angles> NewAngles()
{
    auto made = std::make_unique<Angles>();
    const float* random = RandomFloats(sizeof(float) * 8 * kAngles);  // every fourth is no random number
    for (int i = 0; i < kAngles; ++i) {
        made->angles[i] = 6.2831853f * random[8 * i];
        made->units[i] = random[8 * i + 1];
        made->x[i] = random[8 * i + 2];
        made->y[i] = random[8 * i + 4];
    }
    return made;
}

void Prepare(Work& w)
{
    static const std::unique_ptr<Angles> angles = NewAngles();
    w.src = angles.get();
}

constexpr Task kTasks[] = {
    {"Trigonometry/sine", 4, 0, Prepare, {kAngles}, {1.00}},
    {"Trigonometry/cosine", 4, 0, Prepare, {kAngles}, {1.00}},
    {"Trigonometry/tangent", 4, 0, Prepare, {kAngles}, {1.00}},
    {"Trigonometry/arc-sine", 4, 0, Prepare, {kAngles}, {1.00}},
    {"Trigonometry/arc-cosine", 4, 0, Prepare, {kAngles}, {1.00}},
    {"Trigonometry/arc-tangent", 4, 0, Prepare, {kAngles}, {1.00}},
    {"Trigonometry/direction", 4, 0, Prepare, {kAngles}, {1.00}},
    {"Trigonometry/sines", 4, 0, Prepare, {kAngles}, {0.50}},
    {"Trigonometry/cosines", 4, 0, Prepare, {kAngles}, {0.50}},
    {"Trigonometry/tangents", 4, 0, Prepare, {kAngles}, {0.50}},
    {"Trigonometry/arc-sines", 4, 0, Prepare, {kAngles}, {0.50}},
    {"Trigonometry/arc-cosines", 4, 0, Prepare, {kAngles}, {0.50}},
    {"Trigonometry/arc-tangents", 4, 0, Prepare, {kAngles}, {0.50}},
    {"Trigonometry/directions", 4, 0, Prepare, {kAngles}, {0.50}},
};

const Angles& AnglesOf(const Work& w)
{
    return *static_cast<const Angles*>(w.src);
}

template <float function(float), float (Angles::*arguments)[kAngles]>
void Singles(const Work& w)
{
    for (int i = 0; i < w.count; ++i) {
        static_cast<float*>(w.dst)[i] = function((AnglesOf(w).*arguments)[i]);
    }
}

void SingleDirections(const Work& w)
{
    for (int i = 0; i < w.count; ++i) {
        static_cast<float*>(w.dst)[i] = ZmAtan2(AnglesOf(w).y[i], AnglesOf(w).x[i]);
    }
}

ZmStridedData Array(const void* first)
{
    return {const_cast<void*>(first), sizeof(float)};
}

template <void function(const ZmStridedData&, const ZmStridedData&, int), float (Angles::*arguments)[kAngles]>
void Many(const Work& w)
{
    function(Array(w.dst), Array(AnglesOf(w).*arguments), w.count);
}

void ManyDirections(const Work& w)
{
    ZmAtan2Strided(Array(w.dst), Array(AnglesOf(w).y), Array(AnglesOf(w).x), w.count);
}

constexpr Entry kEntries[] = {
    {"Trigonometry/sine", Singles<ZmSin, &Angles::angles>},
    {"Trigonometry/cosine", Singles<ZmCos, &Angles::angles>},
    {"Trigonometry/tangent", Singles<ZmTan, &Angles::angles>},
    {"Trigonometry/arc-sine", Singles<ZmAsin, &Angles::units>},
    {"Trigonometry/arc-cosine", Singles<ZmAcos, &Angles::units>},
    {"Trigonometry/arc-tangent", Singles<ZmAtan, &Angles::angles>},
    {"Trigonometry/direction", SingleDirections},
    {"Trigonometry/sines", Many<ZmSinStrided, &Angles::angles>},
    {"Trigonometry/cosines", Many<ZmCosStrided, &Angles::angles>},
    {"Trigonometry/tangents", Many<ZmTanStrided, &Angles::angles>},
    {"Trigonometry/arc-sines", Many<ZmAsinStrided, &Angles::units>},
    {"Trigonometry/arc-cosines", Many<ZmAcosStrided, &Angles::units>},
    {"Trigonometry/arc-tangents", Many<ZmAtanStrided, &Angles::angles>},
    {"Trigonometry/directions", ManyDirections},
};

}  // namespace

constexpr Tasks kTrigonometryTasks{kTasks};
constexpr Contender kTrigonometry{"ZmMath", Role::OURS, kEntries};

}  // namespace bench
