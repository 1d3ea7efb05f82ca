#pragma once

#include "XGUID.h"
#include "XString.h"

namespace zm {

/// Low half: h = h * 5 + byte over all bytes, as signed characters, in 32 bits. High half: a second, unrelated hash
/// that distinguishes texts with the same first one.
ZM_API uint64_t HashText(const char* text, unsigned int length);

/// A hash that differs in each process, so that nobody can prepare texts with equal values.
ZM_API uint64_t SeededHash(const char* text, unsigned int length);

/// Whether a key was copied: an XString that cannot get its memory is empty.
/// @{
template <class Copy, class Key>
bool IsWhole(const Copy&, const Key&)
{
    return true;
}
inline bool IsWhole(const XString& copy, const XBaseString& key)
{
    return copy.Length() == key.Length();
}
inline bool IsWhole(const XString& copy, const XString& key)
{
    return copy.Length() == key.Length();
}
/// @}

}  // namespace zm

/// 32-bit hash of a key, as a function object. Numbers and enumerations hash to their own low 32 bits.
///
/// A hash for XHashTable may define three optional members. `LookUpKey` is a cheaper type that the table accepts for
/// look-ups. `Tagged(key)` is the hash with 32 more bits above it, which the table stores and compares before it
/// compares keys. `Seeded(key)` is an unpredictable hash: a table in which many keys share a bucket finds them by it.
template <class K>
struct XHashFun {
    /// The low 32 bits.
    uint32_t operator()(const K& key) const { return uint32_t(key); }
};

/// Hashes pointers by their address, without the low bits that are usually zero through alignment.
template <class T>
struct XHashFun<T*> {
    /// The address, shifted right by four.
    uint32_t operator()(const T* key) const { return uint32_t(reinterpret_cast<uintptr_t>(key) >> 4); }
};

/// Hashes strings: h = h * 5 + character over the length of the text, from h = 0, with signed characters.
template <>
struct XHashFun<XString> {
    /// Lets plain C strings be looked up without a copy.
    typedef XBaseString LookUpKey;

    /// The hash.
    uint32_t operator()(const XBaseString& key) const { return uint32_t(Tagged(key)); }

    /// The hash with 32 more bits above it. Non-static like the call operator, because a hash may have state.
    // NOLINTNEXTLINE(readability-convert-member-functions-to-static)
    uint64_t Tagged(const XBaseString& key) const { return zm::HashText(key.Text(), key.Length()); }

    /// The hash that differs in each process.
    // NOLINTNEXTLINE(readability-convert-member-functions-to-static)
    uint64_t Seeded(const XBaseString& key) const { return zm::SeededHash(key.Text(), key.Length()); }
};

/// Hashes identifiers.
template <>
struct XHashFun<XGUID> {
    /// The identifier's first word.
    uint32_t operator()(const XGUID& key) const { return key.first; }
};

/// Equality of two keys. Strings are compared byte for byte, including case and length.
template <class K>
struct XEqual {
    /// Compares with the type's own ==.
    bool operator()(const K& a, const K& b) const { return a == b; }
};

/// Also compares strings with plain C strings.
template <>
struct XEqual<XString> {
    /// Length first, then all bytes.
    bool operator()(const XBaseString& a, const XBaseString& b) const { return a == b; }
};
