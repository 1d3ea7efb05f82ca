#pragma once

// What the queries are asked about. Plain data, as Harness.h says.
namespace bench {

constexpr int kPairs = 10000;
constexpr int kCloudPoints = 100000;

/// Pairs of random things, about half of them hits. Objects i of the first kind meets number i + shift of the
/// second; the shift changes with every pass, so that no processor learns the answers.
struct alignas(64) QueryInputs {
    /// The second kinds stand twice, so that no shift runs over the end.
    static constexpr int kSeconds = 2 * kPairs;

    using Boxes = float[kSeconds][6];
    using Wide = float[kSeconds][8];

    Boxes boxes, otherBoxes;              ///< largest corner, smallest corner
    Boxes boxesMinFirst, othersMinFirst;  ///< the same, smallest corner first
    Wide wideBoxes, wideOthers;           ///< smallest, 0, largest, 0: for peers with vectors of 16 bytes
    float spheres[kPairs][4];             ///< meet boxes
    float rays[kPairs][6];                ///< meet boxes
    float faceRays[kPairs][6];            ///< meet triangles
    float triangles[kSeconds][12];        ///< three corners and the normal
    float oriented[kSeconds][15], otherOriented[kSeconds][15];             ///< centre, axes, half-sizes
    float orientedAxesFirst[kSeconds][15], othersAxesFirst[kSeconds][15];  ///< axes, centre, half-sizes
    float segments[kPairs][6], otherSegments[kSeconds][6];
    float frustumBoxes[kSeconds][6], frustumMinFirst[kSeconds][6];
    float matrices[kPairs][16];  ///< translations, for which all forms of the test agree
    float origin[3], right[3], up[3], direction[3];
    float frustumPlanes[6][4];  ///< left, right, top, bottom, near, far; positive inside
    float cloud[kCloudPoints][3];
    float movers[kPairs][7], balls[kSeconds][7];  ///< spheres and the ends of their ways; the balls meet rays, too

    int pass;  ///< how many there were since the inputs were prepared
};

// Internal to each file, as in Each.h.
namespace {

/// `Op(first, second)` for all pairs; the results are numbers.
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
