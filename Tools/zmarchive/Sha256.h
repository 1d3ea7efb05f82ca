#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// The hash SHA-256 of bytes that come in pieces (FIPS 180-4).
class Sha256 {
public:
    void Add(const char* bytes, size_t size);

    /// The hash in 64 hexadecimal digits. Nothing can be added afterwards.
    std::string Finish();

private:
    void AddBlock();

    uint32_t m_State[8] = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                           0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    uint8_t m_Block[64];
    size_t m_Filled = 0;
    uint64_t m_Length = 0;
};
