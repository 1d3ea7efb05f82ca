// The loop against which our scalar path is measured: strides known only at run time, compiled with the library's own
// flags.

#include "../Harness.h"

#include <cstring>

namespace bench {
namespace {

template <int Outputs, bool Translate>
void Transform(const Work& w)
{
    float m[4][4];
    std::memcpy(m, w.extra, sizeof(m));
    const char* src = static_cast<const char*>(w.src);
    char* dst = static_cast<char*>(w.dst);
    // Copies: stores through dst could alias the members.
    const int count = w.count, srcStride = w.srcStride, dstStride = w.dstStride;
    for (int i = 0; i < count; ++i, src += srcStride, dst += dstStride) {
        float v[3];
        float res[Outputs];
        std::memcpy(v, src, sizeof(v));
        for (int j = 0; j < Outputs; ++j) {
            res[j] = v[0] * m[0][j] + v[1] * m[1][j] + v[2] * m[2][j] + (Translate ? m[3][j] : 0);
        }
        std::memcpy(dst, res, sizeof(res));
    }
}

constexpr Entry kEntries[] = {
    {"Points/12to12", Transform<3, true>},
    {"Points/12to12-in-place", Transform<3, true>},
    {"Points/32to32", Transform<3, true>},
    {"Points/12to16", Transform<4, true>},
    {"Points/16to16", Transform<4, true>},
    {"Rotates/12to12", Transform<3, false>},
    {"Rotates/12to12-in-place", Transform<3, false>},
    {"Rotates/32to32", Transform<3, false>},
};

}  // namespace

extern const Contender kPlainLoops;
constexpr Contender kPlainLoops{"plain loop", Role::PLAIN_PEER, kEntries};

}  // namespace bench
