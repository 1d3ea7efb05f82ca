#pragma once

#include "XGUID.h"
#include "XString.h"

namespace zm {

/// Low half: h = h * 5 + byte over all bytes, as signed characters, in 32 bits. High half: a second, unrelated hash,
/// which tells texts apart whose first is the same.
ZM_API uint64_t HashText(const char* text, unsigned int length);

}  // namespace zm

/// The hash of a key: a 32-bit function object. Numbers and enumerations are their own low 32 bits.
///
/// A hash for XHashTable may offer two things more. `LookUpKey` is a cheaper type that the table takes where a key
/// is only looked up. `Tagged(key)` is the hash with 32 more bits above it, which the table keeps and compares
/// before it compares keys.
template <class K>
struct XHashFun {
    /// The low 32 bits.
    uint32_t operator()(const K& key) const { return uint32_t(key); }
};

/// Pointers: their address without the bits that alignment makes zero.
template <class T>
struct XHashFun<T*> {
    /// The address, shifted right by four.
    uint32_t operator()(const T* key) const { return uint32_t(reinterpret_cast<uintptr_t>(key) >> 4); }
};

/// h = h * 5 + character over the length of the text, from h = 0, characters signed.
template <>
struct XHashFun<XString> {
    /// A plain text is looked up without a copy.
    typedef XBaseString LookUpKey;

    /// The hash.
    uint32_t operator()(const XBaseString& key) const { return uint32_t(Tagged(key)); }

    /// The hash with 32 more bits above it. A member as the call is one: hashes may have a state.
    // NOLINTNEXTLINE(readability-convert-member-functions-to-static)
    uint64_t Tagged(const XBaseString& key) const { return zm::HashText(key.Text(), key.Length()); }
};

/// The first word.
template <>
struct XHashFun<XGUID> {
    /// The identifier's first word.
    uint32_t operator()(const XGUID& key) const { return key.first; }
};

/// Whether two keys are the same. Strings: byte for byte, case and length included.
template <class K>
struct XEqual {
    /// By their own ==.
    bool operator()(const K& a, const K& b) const { return a == b; }
};

/// Strings are compared with plain texts, too.
template <>
struct XEqual<XString> {
    /// Length first, then all bytes.
    bool operator()(const XBaseString& a, const XBaseString& b) const { return a == b; }
};
