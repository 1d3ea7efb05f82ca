#pragma once

#include "XGUID.h"
#include "XString.h"

namespace zm {

constexpr uint64_t kEvenBytes = 0x00FF00FF00FF00FF;
constexpr uint64_t kEvenWords = 0x0000FFFF0000FFFF;

template <class Word>
Word LoadWord(const char* bytes)
{
    Word word;
    memcpy(&word, bytes, sizeof(word));
    return word;
}

/// b0 5^7 + b1 5^6 + ... + b7 over the bytes of a word, taken as signed. The sum is formed of the bytes plus 128,
/// which have no sign, in lanes that double their width: 5 and 1 for the bytes of a pair, 25 and 1 for two pairs.
inline uint32_t BytePolynomial(uint64_t word)
{
    constexpr uint32_t kExcess = 128u * 97656u;  // 128 (5^7 + ... + 5 + 1)
    word ^= 0x8080808080808080;
    const uint64_t pairs = (word & kEvenBytes) * 5 + (word >> 8 & kEvenBytes);
    const uint64_t quads = (pairs & kEvenWords) * 25 + (pairs >> 16 & kEvenWords);
    return uint32_t(quads) * 625 + uint32_t(quads >> 32) - kExcess;
}

/// 1 to 7 bytes as the last bytes of a word, after zeros.
inline uint64_t LoadLastBytes(const char* bytes, size_t count)
{
    uint64_t word;
    if (count >= 4) {
        word = LoadWord<uint32_t>(bytes) | uint64_t(LoadWord<uint32_t>(bytes + count - 4)) << 8 * (count - 4);
    } else {
        const size_t middle = count / 2, last = count - 1;
        word = uint64_t(uint8_t(bytes[0])) | uint64_t(uint8_t(bytes[middle])) << 8 * middle |
               uint64_t(uint8_t(bytes[last])) << 8 * last;
    }
    return word << (64 - 8 * count);
}

/// Low half: h = h * 5 + byte over all bytes, as signed characters, in 32 bits. Zeros in front do not change it, so
/// the odd bytes come first. High half: a second, unrelated hash, which tells texts apart whose first is the same.
inline uint64_t HashText(const char* text, size_t length)
{
    constexpr uint32_t kFiveToTheEighth = 390625;
    constexpr uint64_t kMixer = 0x9E3779B97F4A7C15;
    uint32_t hash = 0;
    uint64_t tag = 0;
    const size_t odd = length % 8;
    if (odd != 0) {
        const uint64_t word = length >= 8 ? LoadWord<uint64_t>(text) << (64 - 8 * odd) : LoadLastBytes(text, odd);
        hash = BytePolynomial(word);
        tag = word * kMixer;
    }
    for (const char *bytes = text + odd, *end = text + length; bytes != end; bytes += 8) {
        const uint64_t word = LoadWord<uint64_t>(bytes);
        hash = hash * kFiveToTheEighth + BytePolynomial(word);
        tag = (tag ^ word) * kMixer;
    }
    return (tag & 0xFFFFFFFF00000000) | hash;
}

}  // namespace zm

/// The hash of a key: a 32-bit function object. Numbers and enumerations are their own low 32 bits.
///
/// A hash for XHashTable may offer two things more. `LookUpKey` is a cheaper type that the table takes where a key
/// is only looked up. `Tagged(key)` is the hash with 32 more bits above it, which the table keeps and compares
/// before it compares keys.
template <class K>
struct XHashFun {
    uint32_t operator()(const K& key) const { return uint32_t(key); }
};

/// Pointers: their address without the bits that alignment makes zero.
template <class T>
struct XHashFun<T*> {
    uint32_t operator()(const T* key) const { return uint32_t(reinterpret_cast<uintptr_t>(key) >> 4); }
};

/// h = h * 5 + character over the length of the text, from h = 0, characters signed.
template <>
struct XHashFun<XString> {
    typedef XBaseString LookUpKey;

    uint32_t operator()(const XBaseString& key) const { return uint32_t(Tagged(key)); }
    uint64_t Tagged(const XBaseString& key) const { return zm::HashText(key.Text(), key.Length()); }
};

/// The first word.
template <>
struct XHashFun<XGUID> {
    uint32_t operator()(const XGUID& key) const { return key.first; }
};

/// Whether two keys are the same. Strings: byte for byte, case and length included.
template <class K>
struct XEqual {
    bool operator()(const K& a, const K& b) const { return a == b; }
};

template <>
struct XEqual<XString> {
    bool operator()(const XBaseString& a, const XBaseString& b) const { return a == b; }
};
