// FCL's bounding volumes.

#include "../Harness.h"
#include "../QueryInputs.h"

#include <fcl/math/bv/OBB.h>
#include <fcl/math/bv/utility.h>

#include <algorithm>

namespace bench {
namespace {

static_assert(sizeof(fcl::OBB<float>) == 60, "an OBB is fifteen floats: axes, centre, half-sizes");

void OrientedBoxes(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        const auto& a = *reinterpret_cast<const fcl::OBB<float>*>(in.orientedAxesFirst[i]);
        const auto& b = *reinterpret_cast<const fcl::OBB<float>*>(in.othersAxesFirst[j]);
        return a.overlap(b);
    });
}

void Fit(float* sizes, const Work& w, int first, int count)
{
    const QueryInputs& in = *static_cast<const QueryInputs*>(w.src);
    fcl::OBB<float> box;
    fcl::fit(reinterpret_cast<const fcl::Vector3<float>*>(in.cloud) + first, count, box);
    std::copy(box.extent.data(), box.extent.data() + 3, sizes);
}

void BestFitBox(const Work& w)
{
    float* sizes = static_cast<float*>(w.dst);
    Fit(sizes, w, 0, w.count);
    std::sort(sizes, sizes + 3);
}

void BestFitBoxes(const Work& w)
{
    for (int i = 0; i < w.count; ++i) {
        Fit(static_cast<float*>(w.dst) + 3 * i, w, i * kSmallCloudPoints, kSmallCloudPoints);
    }
}

constexpr Entry kEntries[] = {
    {"Queries/oriented-boxes", OrientedBoxes},
    {"Queries/best-fit-box", BestFitBox},
    {"Queries/best-fit-boxes", BestFitBoxes},
};

}  // namespace

extern const Contender kFcl;
constexpr Contender kFcl{"FCL", Role::PEER, kEntries};

}  // namespace bench
