#pragma once

#include "Support/Random.h"

#include <string.h>

#include <vector>

/// Raw memory for strided arrays. Ends with its last used byte, so that a sanitizer detects reads beyond it.
using Block = std::vector<unsigned char>;

/// Bytes before and behind the results, which nothing may touch.
constexpr size_t kMargin = 64;

/// Bytes that `count` elements at a stride span.
inline size_t SpanOf(int count, size_t stride, size_t elementBytes)
{
    return count < 1 ? 0 : size_t(count - 1) * stride + elementBytes;
}

inline Block RandomBytes(Random& random, size_t bytes)
{
    Block block(bytes);
    for (unsigned char& byte : block) {
        byte = static_cast<unsigned char>(random.Bits());
    }
    return block;
}

/// Elements of random floats, the first at `offset`, with random bytes between them.
inline Block RandomArray(Random& random, int count, size_t stride, size_t offset, size_t floats)
{
    Block block = RandomBytes(random, offset + SpanOf(count, stride, 4 * floats));
    for (size_t i = 0; i < floats * size_t(count < 0 ? 0 : count); ++i) {
        const float value = random.Float(100);
        memcpy(&block[offset + i / floats * stride + i % floats * 4], &value, 4);
    }
    return block;
}

/// The first position at which two blocks of equal size differ, or -1.
inline long FirstDifference(const Block& a, const Block& b)
{
    for (size_t i = 0; i < a.size(); ++i) {
        if (a[i] != b[i]) {
            return long(i);
        }
    }
    return -1;
}

/// The start of the large array in a block: `offset` bytes after a multiple of 32.
inline unsigned char* AlignedStart(Block& block, size_t offset)
{
    return block.data() + (32 - uintptr_t(block.data()) % 32) % 32 + offset;
}

template <class T>
bool SameBits(const T& a, const T& b)
{
    return memcmp(&a, &b, sizeof(T)) == 0;
}
