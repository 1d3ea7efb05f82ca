#include "Sha256.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

/// The fractional parts of the cube roots of the first 64 primes.
constexpr uint32_t kRounds[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

uint32_t Turn(uint32_t word, int bits)
{
    return word >> bits | word << (32 - bits);
}

}  // namespace

void Sha256::Add(const char* bytes, size_t size)
{
    m_Length += size;
    while (size != 0) {
        const size_t step = std::min(size, sizeof(m_Block) - m_Filled);
        std::memcpy(m_Block + m_Filled, bytes, step);
        m_Filled += step;
        bytes += step;
        size -= step;
        if (m_Filled == sizeof(m_Block)) {
            AddBlock();
            m_Filled = 0;
        }
    }
}

std::string Sha256::Finish()
{
    const uint64_t bits = m_Length * 8;
    const char mark = '\x80', zero = '\0';
    Add(&mark, 1);
    while (m_Filled != sizeof(m_Block) - 8) {
        Add(&zero, 1);
    }
    char length[8];
    for (int i = 0; i < 8; ++i) {
        length[i] = char(bits >> (56 - 8 * i));
    }
    Add(length, sizeof(length));
    char text[65];
    for (int i = 0; i < 8; ++i) {
        std::snprintf(text + 8 * i, 9, "%08x", unsigned(m_State[i]));
    }
    return text;
}

void Sha256::AddBlock()
{
    uint32_t words[64];
    for (int i = 0; i < 16; ++i) {
        const uint8_t* const at = m_Block + 4 * i;
        words[i] = uint32_t(at[0]) << 24 | uint32_t(at[1]) << 16 | uint32_t(at[2]) << 8 | at[3];
    }
    for (int i = 16; i < 64; ++i) {
        const uint32_t a = words[i - 15], b = words[i - 2];
        words[i] =
            words[i - 16] + (Turn(a, 7) ^ Turn(a, 18) ^ a >> 3) + words[i - 7] + (Turn(b, 17) ^ Turn(b, 19) ^ b >> 10);
    }
    uint32_t s[8];
    std::copy(std::begin(m_State), std::end(m_State), s);
    for (int i = 0; i < 64; ++i) {
        const uint32_t choice = (s[4] & s[5]) ^ (~s[4] & s[6]);
        const uint32_t majority = (s[0] & s[1]) ^ (s[0] & s[2]) ^ (s[1] & s[2]);
        const uint32_t first =
            s[7] + (Turn(s[4], 6) ^ Turn(s[4], 11) ^ Turn(s[4], 25)) + choice + kRounds[i] + words[i];
        const uint32_t second = (Turn(s[0], 2) ^ Turn(s[0], 13) ^ Turn(s[0], 22)) + majority;
        std::copy_backward(s, s + 7, s + 8);
        s[4] += first;
        s[0] = first + second;
    }
    for (int i = 0; i < 8; ++i) {
        m_State[i] += s[i];
    }
}
