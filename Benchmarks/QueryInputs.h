#pragma once

// The inputs of the queries. Plain data, for the reason given in Harness.h.
namespace bench {

constexpr int kPairs = 10000;
constexpr int kCloudPoints = 100000;
constexpr int kSmallClouds = 1000, kSmallCloudPoints = 16;  ///< of the same points

/// Pairs of random objects, about half of them hits. Object i of the first kind is paired with number i + shift of the
/// second; the shift changes with every pass, so that branch predictors do not learn the results.
struct alignas(64) QueryInputs {
    /// The second kinds are stored twice, so that no shift runs past the end.
    static constexpr int kSeconds = 2 * kPairs;

    using Boxes = float[kSeconds][6];
    using Wide = float[kSeconds][8];

    Boxes boxes, otherBoxes;                                    ///< Max, then Min
    Boxes boxesMinFirst, othersMinFirst;                        ///< the same, Min first
    Wide wideBoxes, wideOthers;                                 ///< Min, 0, Max, 0: for peers with vectors of 16 bytes
    float spheres[kPairs][4];                                   ///< paired with boxes
    float rays[kPairs][6];                                      ///< paired with boxes
    float faceRays[kPairs][6];                                  ///< paired with triangles
    float triangles[kSeconds][12];                              ///< three corners and the normal
    float oriented[kSeconds][15], otherOriented[kSeconds][15];  ///< centre, axes, half-sizes
    float orientedAxesFirst[kSeconds][15], othersAxesFirst[kSeconds][15];  ///< axes, centre, half-sizes
    float segments[kPairs][6], otherSegments[kSeconds][6];
    float frustumBoxes[kSeconds][6], frustumMinFirst[kSeconds][6];
    float matrices[kPairs][16];  ///< translations, for which all variants of the test agree
    float origin[3], right[3], up[3], direction[3];
    float frustumPlanes[6][4];  ///< left, right, top, bottom, near, far; positive inside
    float cloud[kCloudPoints][3];
    float movers[kPairs][7], balls[kSeconds][7];  ///< spheres and the ends of their paths; balls also pair with rays

    int pass;  ///< the number of passes since the inputs were prepared
};

// Internal to each file, as in Each.h.
namespace {

/// Calls Op(first, second) for all pairs; the results are numbers.
template <class Op>
inline void EachPair(const Work& w, Op op)
{
    float* dst = static_cast<float*>(w.dst);
    QueryInputs& in = *static_cast<QueryInputs*>(const_cast<void*>(w.src));
    const int shift = int((long(in.pass++) * 617) % kPairs), count = w.count;
    for (int i = 0; i < count; ++i) {
        dst[i] = float(op(in, i, i + shift));
    }
}

}  // namespace
}  // namespace bench
