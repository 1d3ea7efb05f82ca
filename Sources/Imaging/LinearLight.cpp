#include "Imaging/LinearLight.h"

namespace zm {
namespace {

/// For numbers from 0 to 1. Newton's method falls from above until it has converged.
constexpr double FifthRoot(double x)
{
    double root = (x + 4) / 5;
    for (;;) {
        const double four = root * root * root * root, next = root - (root * four - x) / (5 * four);
        if (!(next < root)) {
            return root;
        }
        root = next;
    }
}

constexpr double LightOf(double byte)
{
    const double stored = byte / 255, base = (stored + 0.055) / 1.055, square = base * base;
    return 255 * (stored <= 0.04045 ? stored / 12.92 : square * FifthRoot(square));
}

/// The smallest light of each byte, in units of the last bit and rounded up. No light has a byte beyond 255.
constexpr uint32_t FirstLight(int byte)
{
    constexpr uint32_t kBeyond = ~0u;
    const double exact = byte < 256 ? LightOf(byte - 0.5) * (1 << LightTables::kBits) : 0;
    const uint32_t whole = uint32_t(exact);
    return byte < 256 ? whole + (double(whole) < exact) : kBeyond;
}

constexpr LightTables MakeTables()
{
    LightTables res = {};
    for (int i = 0; i < 256; ++i) {
        res.light[i] = float(LightOf(i));
        res.light[256 + i] = float(i);
    }
    constexpr uint32_t kPart = 1u << LightTables::kRestBits;
    uint32_t byte = 0, next = FirstLight(1);
    for (uint32_t i = 0; i <= uint32_t(LightTables::kParts); ++i) {
        if (i * kPart >= next) {
            next = FirstLight(int(++byte) + 1);
        }
        const uint32_t rest = next - i * kPart;
        res.byte[i] = byte * kPart + (rest < kPart ? kPart - rest : 0);
    }
    return res;
}

}  // namespace

constexpr LightTables g_LightTables = MakeTables();

}  // namespace zm
