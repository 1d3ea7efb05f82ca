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

void BestFitBox(const Work& w)
{
    const QueryInputs& in = *static_cast<const QueryInputs*>(w.src);
    const auto* points = reinterpret_cast<const fcl::Vector3<float>*>(in.cloud);
    fcl::OBB<float> box;
    fcl::fit(points, w.count, box);
    float* sizes = static_cast<float*>(w.dst);
    std::copy(box.extent.data(), box.extent.data() + 3, sizes);
    std::sort(sizes, sizes + 3);
}

constexpr Entry kEntries[] = {
    {"Queries/oriented-boxes", OrientedBoxes},
    {"Queries/best-fit-box", BestFitBox},
};

}  // namespace

extern const Contender kFcl;
constexpr Contender kFcl{"FCL", Role::PEER, kEntries};

}  // namespace bench
