#pragma once

#include "XMemory.h"

#include <stddef.h>
#include <stdint.h>
#include <string.h>

namespace zm {

/// The numbers that int, unsigned int and float do not hold: what operations on strings and configurations take beside
/// those three.
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

/// A text and its length: the record under XString, and the type of parameters that only read a
/// text. Such a parameter takes an XString or, without a copy, a plain text.
class XBaseString {
public:
    /// Longest text that an operation makes.
    static constexpr int kMaxLength = 65534;
    /// What the searches return for "not found".
    static constexpr uint16_t kNotFound = 65535;

    constexpr XBaseString() = default;

    /// Looks at a text that must outlive this record. Null, and a text of more than kMaxLength
    /// characters, read as empty.
    XBaseString(const char* text);

    /// The characters and a terminating NUL, never null: a string without storage reads as one
    /// empty text that all such strings share.
    const char* Text() const { return m_Buffer != nullptr ? m_Buffer : s_Empty; }

    /// Characters before the terminator. They may contain NULs; see XString(int).
    uint16_t Length() const { return m_Length; }
    bool IsEmpty() const { return m_Length == 0; }

    /// Bytes that the string owns, terminator included; 0 for a string without storage.
    uint16_t Capacity() const { return m_Allocated; }

    /// The character at `position`, from 0 to Length().
    char operator[](int position) const { return Text()[position]; }

    /// Order by bytes without sign, then by length: negative if this string comes first, 0 if both are the same.
    ZM_API int Compare(const XBaseString& other) const;

    /// Without regard to the case of A to Z. Two texts: the difference of the first two lower-case
    /// characters that differ, as signed characters, up to the first NUL of this string. If this string
    /// is empty, minus the other's length; if only the other one is, this one's length.
    ZM_API int ICompare(const XBaseString& other) const;

    /// Length and all bytes, NULs included.
    bool operator==(const XBaseString& other) const
    {
        return m_Length == other.m_Length && memcmp(Text(), other.Text(), m_Length) == 0;
    }
    /// By Compare().
    bool operator!=(const XBaseString& other) const { return !(*this == other); }
    bool operator<(const XBaseString& other) const { return Compare(other) < 0; }
    bool operator>(const XBaseString& other) const { return Compare(other) > 0; }
    bool operator<=(const XBaseString& other) const { return Compare(other) <= 0; }
    bool operator>=(const XBaseString& other) const { return Compare(other) >= 0; }

    /// Searches. `start` is the position at which to begin; the result is a position, or kNotFound. A start
    /// beyond the length finds nothing, and an empty string contains nothing. They read up to the first NUL.
    /// @{

    /// The character's first place from `start` on.
    ZM_API uint16_t Find(char character, uint16_t start = 0) const;

    /// The string's first place from `start` on; an empty one is found nowhere.
    ZM_API uint16_t Find(const XBaseString& string, uint16_t start = 0) const;

    /// The same without regard to the case of A to Z. Makes two copies.
    ZM_API uint16_t IFind(const XBaseString& string, uint16_t start = 0) const;

    /// The character's last place before the position `end`; kNotFound, and any end beyond the length, mean
    /// the whole string.
    ZM_API uint16_t RFind(char character, uint16_t end = kNotFound) const;

    /// @}

protected:
    /// The text of all strings without storage.
    ZM_API static const char s_Empty[1];

    /// Gives back a string's block.
    ZM_API static void Release(const XBaseString& record);

    /// Text, length and bytes of the block; null and zeros without one.
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

/// With the plain text on the left.
inline bool operator==(const char* text, const XBaseString& string)
{
    return string == XBaseString(text);
}

/// With the plain text on the left.
inline bool operator!=(const char* text, const XBaseString& string)
{
    return !(string == XBaseString(text));
}

/// An 8-bit string that owns its text: a pointer and two 16-bit words. Every copy has a block of its own, of exactly
/// the size that was asked for: made for short texts, and each growth allocates. ZmAllocator counts the blocks as
/// strings.
///
/// Limits are silent: an append that would pass kMaxLength (65534) characters does nothing, and an assignment
/// or construction from more than that gives an empty string. Positions and lengths beyond the text are cut to
/// it. Arguments may be the string itself or lie in it. Letters and white space are those of ASCII, whatever
/// the locale. Without memory for a block the process ends in the processor's fault.
///
/// Different strings may be used by different threads at once; one string, by one thread at a time or only read.
class XString : public XBaseString {
public:
    /// Empty, without storage.
    XString() = default;

    /// The first `length` characters of `text`, past any NUL in it; length 0 means up to its first NUL. Null
    /// and a text that begins with NUL give the empty string without storage, and so does a negative length.
    ZM_API XString(const char* text, int length = 0);

    /// A block of `size` zero bytes, **with the length size - 1** although its text reads as empty: room for a
    /// caller who fills it in through Data() and then calls FitLength(). A size outside 1 to 65535 gives the empty
    /// string without storage.
    ZM_API explicit XString(int size);

    /// A copy of an empty string has no storage.
    ZM_API XString(const XString& src);
    ZM_API XString(const XBaseString& src);

    /// Takes the storage and leaves `src` empty.
    XString(XString&& src) noexcept : XBaseString(src) { src.Forget(); }

    ~XString()
    {
        if (m_Buffer != nullptr) {
            Release(*this);
        }
    }

    /// The text becomes the argument's; storage that is large enough is kept. Null empties the string.
    ZM_API XString& operator=(const char* text);
    ZM_API XString& operator=(const XBaseString& src);
    XString& operator=(const XString& src) { return *this = static_cast<const XBaseString&>(src); }

    /// Exactly `length` characters of `text`, or that many NULs if it is null. Unlike the constructor takes
    /// length 0 as it stands; the string then owns at least its terminator. A length outside 0 to kMaxLength
    /// empties the string.
    ZM_API XString& Create(const char* text, int length);

    /// The part of `src` from position `start` to its end; empty if the start lies outside it.
    ZM_API XString& CreateTail(const XBaseString& src, int start);

    /// The text that printf() would write, cut to 511 characters.
    ZM_API XString& Format(const char* format, ...) ZM_PRINTF(2, 3);

    /// The text of strftime() for the local time, now or of a calendar time in seconds; empty where it
    /// would have 512 characters or more, or where the system cannot convert that time.
    ZM_API XString& FormatTime(const char* format);
    ZM_API XString& FormatTime(int time, const char* format);

    /// The characters, to be written to: Length() of them, whose terminator stays. Null for a string without storage.
    /// Valid until the string changes otherwise.
    char* Data() { return m_Buffer; }

    /// Cuts the string at its first NUL: the length becomes that of what was written to Data().
    ZM_API void FitLength();

    /// Appends a text (null and "" do nothing), a character, or a value as printf() writes it with
    /// "%d", "%u" (and their long forms), "%f" and "%p".
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

    /// A copy with the argument appended.
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

    /// Changes the case of the letters a to z up to the first NUL.
    ZM_API void ToUpper();
    ZM_API void ToLower();

    /// Removes white space at both ends.
    ZM_API void Trim();

    /// Collapses runs of white space into one space each, also at the ends. **A string that holds a run of two or
    /// more loses its last character**: "a  bc" becomes "a b". That is the contract, do not repair it. Single
    /// white-space characters before the first run stay as they are.
    ZM_API void Strip();

    /// `length` characters from `start` on, or all from there for 0. Empty if the text there begins with NUL.
    ZM_API XString Substring(uint16_t start, uint16_t length = 0) const;

    /// Keeps `length` characters from `start` on.
    ZM_API void Crop(uint16_t start, uint16_t length);

    /// Removes `length` characters from `start` on.
    ZM_API void Cut(uint16_t start, uint16_t length);

    /// Replaces every such character and returns their number.
    ZM_API int Replace(char from, char to);

    /// Replaces every occurrence, from left to right and up to the first NUL, and returns their number. An empty
    /// `from` occurs nowhere. If the result would be longer than kMaxLength, does nothing and returns 0.
    ZM_API int Replace(const XBaseString& from, const XBaseString& to);

    /// Room for `size` characters, at most kMaxLength, if there is less. The text stays.
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
    XBaseString EnsureCapacity(size_t count);
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
