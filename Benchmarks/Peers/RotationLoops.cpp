// Loops over GLM's types, and over plain floats, for AVX2 and FMA.

#define GLM_FORCE_INTRINSICS
#include "../Each.h"
#include "../Turns.h"

#include <glm/glm.hpp>
#include <glm/gtc/quaternion.hpp>

#include <algorithm>
#include <cmath>

namespace bench {
namespace {

using glm::quat;
using glm::vec3;
using Floats = const float*;

void Slerps(const Work& w)
{
    Each<quat, Turns>(w, [](quat& res, const Turns& in, int i) {
        res = glm::slerp(As<quat>(in.from[i]), As<quat>(in.to[i]), in.times[i]);
    });
}

void SlerpsAtOneTime(const Work& w)
{
    Each<quat, Turns>(
        w, [](quat& res, const Turns& in, int i) { res = glm::slerp(As<quat>(in.from[i]), As<quat>(in.to[i]), 0.3f); });
}

void Nlerps(const Work& w)
{
    Each<quat, Turns>(w, [](quat& res, const Turns& in, int i) {
        const quat &a = As<quat>(in.from[i]), &b = As<quat>(in.to[i]);
        const float t = in.times[i];
        res = glm::normalize(a * (1 - t) + b * (glm::dot(a, b) < 0 ? -t : t));
    });
}

void Products(const Work& w)
{
    Each<quat, Turns>(w, [](quat& res, const Turns& in, int i) { res = As<quat>(in.from[i]) * As<quat>(in.to[i]); });
}

void ProductsByOne(const Work& w)
{
    const quat one = As<quat>(static_cast<const Turns*>(w.src)->from[0]);
    Each<quat, Turns>(w, [=](quat& res, const Turns& in, int i) { res = one * As<quat>(in.to[i]); });
}

void NormalizeVectors(const Work& w)
{
    Each<vec3, Turns>(w, [](vec3& res, const Turns& in, int i) { res = glm::normalize(As<vec3>(in.positions[i])); });
}

void NormalizeQuaternions(const Work& w)
{
    Each<quat, Turns>(w, [](quat& res, const Turns& in, int i) { res = glm::normalize(As<quat>(in.from[i])); });
}

/// A sample of `keys` rotations from `values`.
inline quat Sample(const Turns& in, const float (*values)[4], int keys, float time)
{
    const float* const next = std::upper_bound(in.keyTimes, in.keyTimes + keys, time);
    const int i = int(next - in.keyTimes) - 1;
    if (i < 0 || i + 1 == keys) {
        return As<quat>(values[i < 0 ? 0 : i]);
    }
    const float share = (time - in.keyTimes[i]) / (in.keyTimes[i + 1] - in.keyTimes[i]);
    return glm::slerp(As<quat>(values[i]), As<quat>(values[i + 1]), share);
}

void SampleTrack(const Work& w)
{
    Each<quat, Turns>(w, [](quat& res, const Turns& in, int i) { res = Sample(in, in.to, 1000, in.moments[i]); });
}

void SampleTracks(const Work& w)
{
    Each<quat, Turns>(
        w, [](quat& res, const Turns& in, int i) { res = Sample(in, in.to + i * kTrackKeys, kTrackKeys, 7.3f); });
}

void Transforms(const Work& w)
{
    // GLM turns the other way.
    Each<glm::mat4, Turns>(w, [](glm::mat4& res, const Turns& in, int i) {
        const glm::mat3 turn = glm::mat3_cast(glm::conjugate(As<quat>(in.from[i])));
        const vec3& scale = As<vec3>(in.scales[i]);
        res = glm::mat4(glm::vec4(turn[0] * scale.x, 0), glm::vec4(turn[1] * scale.y, 0),
                        glm::vec4(turn[2] * scale.z, 0), glm::vec4(As<vec3>(in.positions[i]), 1));
    });
}

// --- Plain floats ---

struct Quaternion {
    float x, y, z, w;
};

void PlainNlerps(const Work& w)
{
    Each<Quaternion, Turns>(w, [](Quaternion& res, const Turns& in, int i) {
        const Floats a = in.from[i], b = in.to[i];
        const float t = in.times[i], ka = 1 - t;
        const float kb = std::copysign(t, a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3]);
        const float x = ka * a[0] + kb * b[0], y = ka * a[1] + kb * b[1], z = ka * a[2] + kb * b[2],
                    v = ka * a[3] + kb * b[3], f = 1 / std::sqrt(x * x + y * y + z * z + v * v);
        res = {x * f, y * f, z * f, v * f};
    });
}

void PlainProducts(const Work& w)
{
    Each<Quaternion, Turns>(w, [](Quaternion& res, const Turns& in, int i) {
        const Floats a = in.from[i], b = in.to[i];
        res = {a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1],
               a[3] * b[1] + a[1] * b[3] + a[2] * b[0] - a[0] * b[2],
               a[3] * b[2] + a[2] * b[3] + a[0] * b[1] - a[1] * b[0],
               a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2]};
    });
}

void PlainNormalizeQuaternions(const Work& w)
{
    Each<Quaternion, Turns>(w, [](Quaternion& res, const Turns& in, int i) {
        const Floats q = in.from[i];
        const float f = 1 / std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
        res = {q[0] * f, q[1] * f, q[2] * f, q[3] * f};
    });
}

constexpr Entry kEntries[] = {
    {"Animation/slerp", Slerps},
    {"Animation/slerp-at-one-time", SlerpsAtOneTime},
    {"Animation/nlerp", Nlerps},
    {"Animation/nlerp", PlainNlerps, "plain"},
    {"Animation/quaternion-products", Products},
    {"Animation/quaternion-products", PlainProducts, "plain"},
    {"Animation/quaternion-products-by-one", ProductsByOne},
    {"Animation/normalize-vectors", NormalizeVectors},
    {"Animation/normalize-quaternions", NormalizeQuaternions},
    {"Animation/normalize-quaternions", PlainNormalizeQuaternions, "plain"},
    {"Animation/sample-track", SampleTrack},
    {"Animation/sample-tracks", SampleTracks},
    {"Animation/transforms", Transforms},
};

}  // namespace

extern const Contender kRotationLoops;
constexpr Contender kRotationLoops{"GLM loop", Role::PEER, kEntries};

}  // namespace bench
