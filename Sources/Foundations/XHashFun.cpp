#include "XHashFun.h"

#include "Platform/FirstUse.h"
#include "Platform/OsClock.h"
#include "Platform/Unaligned.h"

#include <emmintrin.h>

namespace zm {

namespace {

constexpr size_t kBlock = 16;

constexpr uint32_t PowerOf5(unsigned exponent)
{
    uint32_t power = 1;
    for (; exponent > 0; --exponent) {
        power *= 5;
    }
    return power;
}

constexpr uint32_t kPowersOf5[kBlock] = {
    PowerOf5(0), PowerOf5(1), PowerOf5(2),  PowerOf5(3),  PowerOf5(4),  PowerOf5(5),  PowerOf5(6),  PowerOf5(7),
    PowerOf5(8), PowerOf5(9), PowerOf5(10), PowerOf5(11), PowerOf5(12), PowerOf5(13), PowerOf5(14), PowerOf5(15)};

// A mask of the last `count` bytes of a register.
__m128i MaskOfLast(size_t count)
{
    static constexpr unsigned char kMasks[2 * kBlock] = {0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,
                                                         0,   0,   0,   0,   0,   255, 255, 255, 255, 255, 255,
                                                         255, 255, 255, 255, 255, 255, 255, 255, 255, 255};
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(kMasks + count));
}

// b0 5^15 + b1 5^14 + ... + b15: first four sums of four bytes each, whose weights fit in 16 bits, then their total.
uint32_t Polynomial(__m128i bytes)
{
    const __m128i weights = _mm_set_epi16(1, 5, 25, 125, 1, 5, 25, 125);
    const __m128i low = _mm_madd_epi16(_mm_srai_epi16(_mm_unpacklo_epi8(bytes, bytes), 8), weights);
    const __m128i high = _mm_madd_epi16(_mm_srai_epi16(_mm_unpackhi_epi8(bytes, bytes), 8), weights);
    const __m128i even = _mm_unpacklo_epi64(_mm_shuffle_epi32(low, _MM_SHUFFLE(3, 1, 2, 0)),
                                            _mm_shuffle_epi32(high, _MM_SHUFFLE(3, 1, 2, 0)));
    const __m128i odd = _mm_unpackhi_epi64(_mm_shuffle_epi32(low, _MM_SHUFFLE(3, 1, 2, 0)),
                                           _mm_shuffle_epi32(high, _MM_SHUFFLE(3, 1, 2, 0)));
    const __m128i quads = _mm_add_epi32(even, odd);
    const __m128i sums =
        _mm_add_epi64(_mm_mul_epu32(quads, _mm_set_epi32(0, int(PowerOf5(4)), 0, int(PowerOf5(12)))),
                      _mm_mul_epu32(_mm_srli_epi64(quads, 32), _mm_set_epi32(0, 1, 0, int(PowerOf5(8)))));
    return uint32_t(_mm_cvtsi128_si32(_mm_add_epi32(sums, _mm_unpackhi_epi64(sums, sums))));
}

// Loads 0 to 7 bytes as the last bytes of a word, padded with zeros in front.
uint64_t LoadFew(const char* bytes, size_t count)
{
    if (count >= 4) {
        const uint64_t high = LoadUnaligned<uint32_t>(bytes + count - 4);
        return high << 32 | uint64_t(LoadUnaligned<uint32_t>(bytes)) << 8 * (8 - count);
    }
    uint64_t word = 0;
    for (size_t i = 0; i < count; ++i) {
        word = word >> 8 | uint64_t(uint8_t(bytes[i])) << 56;
    }
    return word;
}

constexpr uint64_t Mix(uint64_t low, uint64_t high)
{
    return (low * 0x9E3779B97F4A7C15 ^ high) * 0xD1B54A32D192ED03;
}

uint64_t Combine(uint32_t hash, uint64_t tag)
{
    return (tag & 0xFFFFFFFF00000000) | hash;
}

// Leading zeros do not change the hash of a text.
uint64_t HashShort(const char* text, size_t length)
{
    uint64_t low = 0, high;
    if (length > 8) {
        low = LoadUnaligned<uint64_t>(text) << 8 * (kBlock - length);
        high = LoadUnaligned<uint64_t>(text + length - 8);
    } else {
        high = length == 8 ? LoadUnaligned<uint64_t>(text) : LoadFew(text, length);
    }
    return Combine(Polynomial(_mm_set_epi64x(int64_t(high), int64_t(low))), Mix(low, high));
}

// XOR of the two halves of the 128-bit product.
uint64_t Fold(uint64_t a, uint64_t b)
{
#ifdef __SIZEOF_INT128__
    __extension__ typedef unsigned __int128 Wide;
    const Wide product = Wide(a) * b;
    return uint64_t(product) ^ uint64_t(product >> 64);
#else
    const uint64_t aLow = uint32_t(a), aHigh = a >> 32, bLow = uint32_t(b), bHigh = b >> 32;
    const uint64_t low = aLow * bLow, middle = aHigh * bLow + (low >> 32), other = aLow * bHigh + uint32_t(middle);
    return (other << 32 | uint32_t(low)) ^ (aHigh * bHigh + (middle >> 32) + (other >> 32));
#endif
}

struct Seed {
    uint64_t first, second;

    Seed()
    {
        const uint64_t random = uint64_t(ReadCounter()) ^ reinterpret_cast<uintptr_t>(this);
        first = Fold(random ^ 0x9E3779B97F4A7C15, 0xD1B54A32D192ED03) | 1;
        second = Fold(first ^ 0xBF58476D1CE4E5B9, 0x94D049BB133111EB ^ random) | 1;
    }
};

}  // namespace

uint64_t HashText(const char* text, unsigned int length)
{
    if (length < kBlock) {
        return HashShort(text, length);
    }
    uint32_t hash = 0;
    uint64_t tag = 0;
    const char* const end = text + length;
    for (; size_t(end - text) >= kBlock; text += kBlock) {
        hash = hash * (kPowersOf5[15] * 5) + Polynomial(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text)));
        tag = Mix(tag ^ LoadUnaligned<uint64_t>(text), LoadUnaligned<uint64_t>(text + 8));
    }
    const size_t rest = size_t(end - text);
    const char* const last = end - kBlock;
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(last));
    hash = hash * kPowersOf5[rest] + Polynomial(_mm_and_si128(bytes, MaskOfLast(rest)));
    return Combine(hash, Mix(tag ^ LoadUnaligned<uint64_t>(last), LoadUnaligned<uint64_t>(last + 8)));
}

uint64_t SeededHash(const char* text, unsigned int length)
{
    static FirstUse<Seed> made;
    const Seed& seed = made.Get([](void* memory) { new (memory) Seed; });
    size_t rest = length;
    uint64_t hash = seed.second ^ rest, low = 0, high = 0;
    for (; rest > 16; rest -= 16, text += 16) {
        hash = Fold(LoadUnaligned<uint64_t>(text) ^ seed.first, LoadUnaligned<uint64_t>(text + 8) ^ hash);
    }
    if (rest >= 8) {
        low = LoadUnaligned<uint64_t>(text);
        high = LoadUnaligned<uint64_t>(text + rest - 8);
    } else if (rest >= 4) {
        low = LoadUnaligned<uint32_t>(text);
        high = LoadUnaligned<uint32_t>(text + rest - 4);
    } else if (rest > 0) {
        low = uint8_t(text[0]) | uint64_t(uint8_t(text[rest / 2])) << 8 | uint64_t(uint8_t(text[rest - 1])) << 16;
    }
    return Fold(Fold(low ^ seed.first, high ^ hash), seed.second);
}

}  // namespace zm
