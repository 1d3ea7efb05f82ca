#include "Platform/FirstUse.h"
#include "Platform/OsClock.h"
#include "Platform/Unaligned.h"
#include "ZmBigFile.h"

#include <stdint.h>

namespace {

template <class Word>
uint64_t Load(const char* bytes)
{
    return zm::LoadUnaligned<Word>(bytes);
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
        const uint64_t random = uint64_t(zm::ReadCounter()) ^ reinterpret_cast<uintptr_t>(this);
        first = Fold(random ^ 0x9E3779B97F4A7C15, 0xD1B54A32D192ED03) | 1;
        second = Fold(first ^ 0xBF58476D1CE4E5B9, 0x94D049BB133111EB ^ random) | 1;
    }
};

}  // namespace

uint64_t ZmBigFile::NameHash::Tagged(const XBaseString& name)
{
    static zm::FirstUse<Seed> made;
    const Seed& seed = made.Get([](void* memory) { new (memory) Seed; });
    const char* text = name.Text();
    size_t rest = name.Length();
    uint64_t hash = seed.second ^ rest, low = 0, high = 0;
    for (; rest > 16; rest -= 16, text += 16) {
        hash = Fold(Load<uint64_t>(text) ^ seed.first, Load<uint64_t>(text + 8) ^ hash);
    }
    if (rest >= 8) {
        low = Load<uint64_t>(text);
        high = Load<uint64_t>(text + rest - 8);
    } else if (rest >= 4) {
        low = Load<uint32_t>(text);
        high = Load<uint32_t>(text + rest - 4);
    } else if (rest > 0) {
        low = Load<uint8_t>(text) | Load<uint8_t>(text + rest / 2) << 8 | Load<uint8_t>(text + rest - 1) << 16;
    }
    return Fold(Fold(low ^ seed.first, high ^ hash), seed.second);
}
