#pragma once

#include "XMemory.h"

#include <stddef.h>
#include <stdint.h>
#include <string.h>

namespace zm {

/// Number types beyond int, unsigned int and float. Operations on strings and configurations accept them in addition
/// to those three.
template <class Number>
struct IfWideNumber {
};
template <>
struct IfWideNumber<double> {
    typedef int Type;
};
template <>
struct IfWideNumber<long> {
    typedef int Type;
};
template <>
struct IfWideNumber<unsigned long> {
    typedef int Type;
};
template <>
struct IfWideNumber<long long> {
    typedef int Type;
};
template <>
struct IfWideNumber<unsigned long long> {
    typedef int Type;
};

}  // namespace zm

/// Text and length: the record under XString, and the parameter type for functions that only read text. Such a
/// parameter accepts an XString or, without a copy, a plain C string.
class XBaseString {
public:
    /// Maximum length of a text, in characters.
    static constexpr int kMaxLength = 65534;
    /// Returned by the searches when nothing is found.
    static constexpr uint16_t kNotFound = 65535;

    constexpr XBaseString() = default;

    /// Refers to `text`, which must outlive this record. Null and texts longer than kMaxLength are treated as empty.
    XBaseString(const char* text);

    /// The NUL-terminated characters. Never null: all strings without storage share one empty text.
    const char* Text() const { return m_Buffer != nullptr ? m_Buffer : s_Empty; }

    /// Number of characters before the terminator. The text may contain NULs; see XString(int).
    uint16_t Length() const { return m_Length; }
    bool IsEmpty() const { return m_Length == 0; }

    /// Bytes owned by the string, including the terminator; 0 for a string without storage.
    uint16_t Capacity() const { return m_Allocated; }

    /// The character at `position`, from 0 to Length().
    char operator[](int position) const { return Text()[position]; }

    /// Compares as unsigned bytes, then by length. Returns a negative value if this string comes first, 0 if both are
    /// equal.
    ZM_API int Compare(const XBaseString& other) const;

    /// Compares ignoring the case of A to Z. For two non-empty strings returns the difference, as signed characters, of
    /// the first two lower-cased characters that differ; stops at the first NUL of this string. If this string is
    /// empty, returns minus the other's length; if only the other is empty, returns this string's length.
    ZM_API int ICompare(const XBaseString& other) const;

    /// Compares length and all bytes, including NULs.
    bool operator==(const XBaseString& other) const
    {
        return m_Length == other.m_Length && memcmp(Text(), other.Text(), m_Length) == 0;
    }
    /// Compare in the order of Compare().
    bool operator!=(const XBaseString& other) const { return !(*this == other); }
    bool operator<(const XBaseString& other) const { return Compare(other) < 0; }
    bool operator>(const XBaseString& other) const { return Compare(other) > 0; }
    bool operator<=(const XBaseString& other) const { return Compare(other) <= 0; }
    bool operator>=(const XBaseString& other) const { return Compare(other) >= 0; }

    /// Searches. They begin at position `start` and return a position or kNotFound. A start beyond the length finds
    /// nothing, and nothing is found in an empty string. Only the text up to the first NUL is searched.
    /// @{

    /// Finds the first occurrence of the character.
    ZM_API uint16_t Find(char character, uint16_t start = 0) const;

    /// Finds the first occurrence of the string; an empty string is never found.
    ZM_API uint16_t Find(const XBaseString& string, uint16_t start = 0) const;

    /// Finds the first occurrence, ignoring the case of A to Z. Makes two copies.
    ZM_API uint16_t IFind(const XBaseString& string, uint16_t start = 0) const;

    /// Finds the last occurrence of the character before position `end`. kNotFound, or any end beyond the length, means
    /// the whole string.
    ZM_API uint16_t RFind(char character, uint16_t end = kNotFound) const;

    /// @}

protected:
    /// The text shared by all strings without storage.
    ZM_API static const char s_Empty[1];

    /// Frees the storage of a string.
    ZM_API static void Release(const XBaseString& record);

    /// Text, length and size of the block in bytes; null and zeros without a block.
    char* m_Buffer = nullptr;
    uint16_t m_Length = 0;
    uint16_t m_Allocated = 0;
};

inline XBaseString::XBaseString(const char* text)
{
    const size_t length = text != nullptr ? strlen(text) : 0;
    if (length != 0 && length <= size_t(kMaxLength)) {
        m_Buffer = const_cast<char*>(text);  // only XString writes, and only into its own blocks
        m_Length = uint16_t(length);
    }
}

/// Compares with a plain C string on the left.
inline bool operator==(const char* text, const XBaseString& string)
{
    return string == XBaseString(text);
}

/// Compares with a plain C string on the left.
inline bool operator!=(const char* text, const XBaseString& string)
{
    return !(string == XBaseString(text));
}

/// 8-bit string that owns its text: a pointer and two 16-bit words. Every copy has its own block of exactly the
/// requested size. Designed for short texts: each growth reallocates. ZmAllocator counts the blocks as strings.
///
/// Limits are silent: an append that would exceed kMaxLength (65534) characters does nothing, and an assignment or
/// construction from a longer text gives an empty string. So is a lack of memory: an append or a replacement does
/// nothing then, and an assignment or construction gives an empty string. Positions and lengths beyond the text are
/// clamped to it. Arguments may be the string itself or point into it. Letters and white space are those of ASCII,
/// whatever the locale.
///
/// Different strings may be used by different threads at once. A single string must not be used by several threads at
/// once unless all of them only read it.
class XString : public XBaseString {
public:
    /// An empty string without storage.
    XString() = default;

    /// Copies the first `length` characters of `text`, including any NULs; length 0 means up to the first NUL. Null, a
    /// text that begins with NUL, or a negative length gives an empty string without storage.
    ZM_API XString(const char* text, int length = 0);

    /// Allocates a block of `size` zero bytes **and sets the length to size - 1**, although the text reads as empty.
    /// The caller fills it through Data() and then calls FitLength(). A size outside 1 to 65535 gives an empty string
    /// without storage.
    ZM_API explicit XString(int size);

    /// Copies; the copy of an empty string has no storage.
    ZM_API XString(const XString& src);
    ZM_API XString(const XBaseString& src);

    /// Takes over the storage and leaves `src` empty.
    XString(XString&& src) noexcept : XBaseString(src) { src.Forget(); }

    ~XString()
    {
        if (m_Buffer != nullptr) {
            Release(*this);
        }
    }

    /// Copies the argument's text and keeps storage that is large enough. Null empties the string.
    ZM_API XString& operator=(const char* text);
    ZM_API XString& operator=(const XBaseString& src);
    XString& operator=(const XString& src) { return *this = static_cast<const XBaseString&>(src); }

    /// Copies exactly `length` characters of `text`, or stores `length` NULs if it is null. Unlike in the constructor,
    /// length 0 means no characters; the string then still owns at least its terminator. A length outside 0 to
    /// kMaxLength empties the string.
    ZM_API XString& Create(const char* text, int length);

    /// Copies `src` from position `start` to its end; empty if the start lies outside it.
    ZM_API XString& CreateTail(const XBaseString& src, int start);

    /// Stores the text that printf() would write, cut to 511 characters.
    ZM_API XString& Format(const char* format, ...) ZM_PRINTF(2, 3);

    /// Stores what strftime() writes for the local time: now, or at a calendar time in seconds. Empty if the text would
    /// have 512 characters or more, or if the system cannot convert the time.
    ZM_API XString& FormatTime(const char* format);
    ZM_API XString& FormatTime(int time, const char* format);

    /// Writable characters: Length() of them, followed by a terminator that must not change. Null for a string without
    /// storage. Valid until the string is changed in any other way.
    char* Data() { return m_Buffer; }

    /// Cuts the string at its first NUL, so that the length matches what was written to Data().
    ZM_API void FitLength();

    /// Appends a text (null and "" do nothing), a character, or a value as printf() writes it with
    /// "%d", "%u" (or their long forms), "%f" or "%p".
    /// @{
    ZM_API XString& operator<<(const char* text);
    ZM_API XString& operator<<(const XBaseString& string);
    XString& operator<<(const XString& string) { return *this << static_cast<const XBaseString&>(string); }
    ZM_API XString& operator<<(char character);
    ZM_API XString& operator<<(int value);
    ZM_API XString& operator<<(unsigned int value);
    ZM_API XString& operator<<(float value);
    ZM_API XString& operator<<(double value);
    ZM_API XString& operator<<(long long value);
    ZM_API XString& operator<<(unsigned long long value);
    XString& operator<<(long value) { return *this << static_cast<long long>(value); }
    XString& operator<<(unsigned long value) { return *this << static_cast<unsigned long long>(value); }
    ZM_API XString& operator<<(const void* pointer);
    /// @}

    /// Returns a copy with the argument appended.
    /// @{
    XString operator+(const char* text) const { return Plus(text); }
    XString operator+(const XBaseString& string) const { return Plus(string); }
    XString operator+(char character) const { return Plus(character); }
    XString operator+(int value) const { return Plus(value); }
    XString operator+(unsigned int value) const { return Plus(value); }
    XString operator+(float value) const { return Plus(value); }
    template <class Number, typename zm::IfWideNumber<Number>::Type = 0>
    XString operator+(Number value) const
    {
        return Plus(value);
    }
    /// @}

    /// Changes the case of ASCII letters up to the first NUL.
    ZM_API void ToUpper();
    ZM_API void ToLower();

    /// Removes white space from both ends.
    ZM_API void Trim();

    /// Collapses each run of white space into one space, also at the ends. **A string with a run of two or more loses
    /// its last character**: "a  bc" becomes "a b". Single white-space characters before the first run stay unchanged.
    ZM_API void Strip();

    /// Returns `length` characters from `start` on; 0 means all of them. Empty if the text there begins with NUL.
    ZM_API XString Substring(uint16_t start, uint16_t length = 0) const;

    /// Keeps only `length` characters from `start` on.
    ZM_API void Crop(uint16_t start, uint16_t length);

    /// Removes `length` characters from `start` on.
    ZM_API void Cut(uint16_t start, uint16_t length);

    /// Replaces every occurrence of the character. Returns the number of replacements.
    ZM_API int Replace(char from, char to);

    /// Replaces every occurrence, from left to right and up to the first NUL. Returns the number of replacements. An
    /// empty `from` is never found. Does nothing and returns 0 if the result would be longer than kMaxLength.
    ZM_API int Replace(const XBaseString& from, const XBaseString& to);

    /// Grows the storage to hold `size` characters, at most kMaxLength. The text stays unchanged.
    ZM_API void Reserve(uint16_t size);

    /// Exchanges the storage.
    void Swap(XString& other) noexcept
    {
        const XBaseString old = *this;
        static_cast<XBaseString&>(*this) = other;
        static_cast<XBaseString&>(other) = old;
    }

private:
    friend class XStringTokenizer;

    template <class Value>
    XString Plus(const Value& value) const
    {
        XString sum(*this);
        sum << value;
        return sum;
    }

    void Forget() { static_cast<XBaseString&>(*this) = XBaseString(); }
    void Install(char* block, size_t size);
    void InstallCopy(const char* text, size_t count);
    void SetLength(size_t length);
    void Empty();
    bool EnsureCapacity(size_t count, XBaseString& old);
    XString& Assign(const char* text, size_t count);
    XString& AssignTime(int64_t time, const char* format);
    XString& Append(const char* text, size_t count);
    template <class Number>
    XString& AppendNumber(Number value);
    XString& AppendFormat(const char* format, ...) ZM_PRINTF(2, 3);
    int Overwrite(const XBaseString& from, const XBaseString& to);
    int Rebuild(const XBaseString& from, const XBaseString& to);
};

static_assert(sizeof(XString) == sizeof(XBaseString), "a string is its record");

template <>
struct XIsRelocatable<XString> {
    static constexpr bool value = true;
};
