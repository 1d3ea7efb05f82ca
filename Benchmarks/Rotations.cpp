// Quaternions and their transforms by the thousand.

#include "Families.h"
#include "Inputs.h"
#include "Turns.h"

#include "ZmAnimation.h"
#include "ZmBuilders.h"
#include "ZmInterpolation.h"
#include "ZmKeyFrames.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <vector>

namespace bench {
namespace {

std::unique_ptr<Turns> NewTurns()
{
    auto made = std::make_unique<Turns>();
    const Operands& in = RandomOperands();
    const float* random = RandomFloats(sizeof(float) * 6 * kTurns);
    for (int i = 0; i < kTurns; ++i) {
        const int from = i % kOperands, to = (i + i / kOperands) % kOperands;
        std::memcpy(made->from[i], in.p[from], sizeof(made->from[i]));
        std::memcpy(made->to[i], in.q[to], sizeof(made->to[i]));
        made->times[i] = in.t[(from + 7 * to) % kOperands];
        made->keyTimes[i] = float(i);
        made->moments[i] = float(i) * 999 / kTurns;
        std::memcpy(made->positions[i], random + 6 * i, sizeof(made->positions[i]));
        std::memcpy(made->scales[i], random + 6 * i + 3, sizeof(made->scales[i]));
    }
    return made;
}

void Prepare(Work& w)
{
    static const std::unique_ptr<Turns> turns = NewTurns();
    w.src = turns.get();
}

constexpr double kFloats = 1e-3;  // the peers compute in floats

constexpr Task kTasks[] = {
    {"Animation/slerp", 16, 0, Prepare, {1000, kTurns}, {0.35, 0.35}, kFloats},
    {"Animation/slerp-at-one-time", 16, 0, Prepare, {1000, kTurns}, {0.35, 0.35}, kFloats},
    {"Animation/nlerp", 16, 0, Prepare, {1000, kTurns}, {0.35, 0.35}, kFloats},
    {"Animation/quaternion-products", 16, 0, Prepare, {1000, kTurns}, {1.10, 1.10}},
    {"Animation/quaternion-products-by-one", 16, 0, Prepare, {1000, kTurns}, {0.80, 0.80}},
    {"Animation/normalize-vectors", 12, 0, Prepare, {1000, kTurns}, {0.90, 0.90}},
    {"Animation/normalize-quaternions", 16, 0, Prepare, {1000, kTurns}, {0.90, 0.90}},
    {"Animation/sample-track", 16, 0, Prepare, {1000, kTurns}, {0.40, 0.40}, kFloats},
    {"Animation/sample-tracks", 16, 0, Prepare, {100, kTurns / kTrackKeys}, {0.60, 0.60}, kFloats},
    {"Animation/transforms", 64, 0, Prepare, {1000, kTurns}, {0.85, 0.85}},
};

const Turns& TurnsOf(const Work& w)
{
    return *static_cast<const Turns*>(w.src);
}

/// One of the arrays, or the results.
ZmStridedData Array(const void* first, size_t stride)
{
    return {const_cast<void*>(first), unsigned(stride)};
}

void Slerps(const Work& w)
{
    const Turns& in = TurnsOf(w);
    ZmSlerpStrided(Array(w.dst, 16), Array(in.from, 16), Array(in.to, 16), Array(in.times, 4), w.count);
}

void SlerpsAtOneTime(const Work& w)
{
    ZmSlerpStrided(Array(w.dst, 16), Array(TurnsOf(w).from, 16), Array(TurnsOf(w).to, 16), 0.3f, w.count);
}

void Nlerps(const Work& w)
{
    const Turns& in = TurnsOf(w);
    ZmNlerpStrided(Array(w.dst, 16), Array(in.from, 16), Array(in.to, 16), Array(in.times, 4), w.count);
}

void Products(const Work& w)
{
    Zm3DQuaternionMultiplyStrided(Array(w.dst, 16), Array(TurnsOf(w).from, 16), Array(TurnsOf(w).to, 16), w.count);
}

void ProductsByOne(const Work& w)
{
    Zm3DQuaternionMultiplyStrided(Array(w.dst, 16), Array(TurnsOf(w).from, 0), Array(TurnsOf(w).to, 16), w.count);
}

void NormalizeVectors(const Work& w)
{
    ZmNormalizeVectorStrided(Array(w.dst, 12), Array(TurnsOf(w).positions, 12), w.count);
}

void NormalizeQuaternions(const Work& w)
{
    ZmNormalizeQuaternionStrided(Array(w.dst, 16), Array(TurnsOf(w).from, 16), w.count);
}

void SampleTrack(const Work& w)
{
    const Turns& in = TurnsOf(w);
    const ZmTrack track = {Array(in.keyTimes, 4), Array(in.to, 16), 1000};
    ZmSampleRotations(Array(w.dst, 16), track, Array(in.moments, 4), w.count);
}

/// As a player does: each call a little later.
void SampleTracks(const Work& w)
{
    static std::vector<int> cursors(kTurns / kTrackKeys);
    static const std::vector<ZmTrack> tracks = [&] {
        std::vector<ZmTrack> res;
        for (int i = 0; i < kTurns / kTrackKeys; ++i) {
            res.push_back({Array(TurnsOf(w).keyTimes, 4), Array(TurnsOf(w).to[i * kTrackKeys], 16), kTrackKeys});
        }
        return res;
    }();
    ZmSampleRotationTracks(Array(w.dst, 16), tracks.data(), w.count, 7.3f, cursors.data());
}

void Transforms(const Work& w)
{
    const Turns& in = TurnsOf(w);
    ZmTransformMatrixStrided(Array(w.dst, 64), Array(in.positions, 12), Array(in.from, 16), Array(in.scales, 12),
                             w.count);
}

constexpr Entry kEntries[] = {
    {"Animation/slerp", Slerps},
    {"Animation/slerp-at-one-time", SlerpsAtOneTime},
    {"Animation/nlerp", Nlerps},
    {"Animation/quaternion-products", Products},
    {"Animation/quaternion-products-by-one", ProductsByOne},
    {"Animation/normalize-vectors", NormalizeVectors},
    {"Animation/normalize-quaternions", NormalizeQuaternions},
    {"Animation/sample-track", SampleTrack},
    {"Animation/sample-tracks", SampleTracks},
    {"Animation/transforms", Transforms},
};

// --- Our own single calls in a loop ---

const ZmQuaternion& Quaternion(const float* floats)
{
    return *reinterpret_cast<const ZmQuaternion*>(floats);
}

const ZmVector& Vector(const float* floats)
{
    return *reinterpret_cast<const ZmVector*>(floats);
}

template <class Result, class Op>
void Each(const Work& w, Op op)
{
    const Turns& in = TurnsOf(w);
    for (int i = 0; i < w.count; ++i) {
        static_cast<Result*>(w.dst)[i] = op(in, i);
    }
}

void SlerpsSingly(const Work& w)
{
    Each<ZmQuaternion>(w, [](const Turns& in, int i) {
        return SlerpExact(Quaternion(in.from[i]), Quaternion(in.to[i]), in.times[i]);
    });
}

void NlerpsSingly(const Work& w)
{
    Each<ZmQuaternion>(
        w, [](const Turns& in, int i) { return Nlerp(Quaternion(in.from[i]), Quaternion(in.to[i]), in.times[i]); });
}

void ProductsSingly(const Work& w)
{
    Each<ZmQuaternion>(w, [](const Turns& in, int i) { return Quaternion(in.from[i]) * Quaternion(in.to[i]); });
}

void NormalizeVectorsSingly(const Work& w)
{
    Each<ZmVector>(w, [](const Turns& in, int i) { return Normalized(Vector(in.positions[i])); });
}

void NormalizeQuaternionsSingly(const Work& w)
{
    Each<ZmQuaternion>(w, [](const Turns& in, int i) { return Normalized(Quaternion(in.from[i])); });
}

void TransformsSingly(const Work& w)
{
    Each<ZmMatrix>(w, [](const Turns& in, int i) {
        return ZmTransform(Vector(in.positions[i]), Quaternion(in.from[i]), Vector(in.scales[i]));
    });
}

constexpr Entry kSingleEntries[] = {
    {"Animation/slerp", SlerpsSingly},
    {"Animation/nlerp", NlerpsSingly},
    {"Animation/quaternion-products", ProductsSingly},
    {"Animation/normalize-vectors", NormalizeVectorsSingly},
    {"Animation/normalize-quaternions", NormalizeQuaternionsSingly},
    {"Animation/transforms", TransformsSingly},
};

}  // namespace

constexpr Tasks kRotationTasks{kTasks};
constexpr Contender kRotations{"ZmMath", Role::OURS, kEntries};
constexpr Contender kRotationsSingly{"ZmMath singly", Role::PEER, kSingleEntries};

}  // namespace bench
