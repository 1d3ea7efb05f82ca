#include "XString.h"

#include "Foundations/StringStorage.h"
#include "Platform/Characters.h"
#include "Platform/OsClock.h"

#include <algorithm>
#include <charconv>
#include <stdarg.h>
#include <stdio.h>
#include <time.h>

namespace {

constexpr int kFormatBuffer = 512;

// Whether a text lies inside a block, and so changes with it.
bool LiesIn(const char* text, const char* block, size_t size)
{
    return reinterpret_cast<uintptr_t>(text) - reinterpret_cast<uintptr_t>(block) < size;
}

// The first occurrence at or after `at` that ends before `end`; null if there is none.
const char* NextOccurrence(const char* at, const char* end, const XBaseString& wanted)
{
    const char* found = at < end ? strstr(at, wanted.Text()) : nullptr;
    return found != nullptr && end - found >= wanted.Length() ? found : nullptr;
}

}  // namespace

XString::XString(const char* text, int length)
{
    if (text == nullptr || *text == 0) {
        return;
    }
    const size_t count = length == 0 ? strlen(text) : size_t(std::max(length, 0));
    if (count != 0 && count <= size_t(kMaxLength)) {
        InstallCopy(text, count);
    }
}

XString::XString(int size)
{
    if (size > 0 && size <= kMaxLength + 1) {
        char* zeros = zm::NewText(size_t(size));
        if (zeros == nullptr) {
            return;
        }
        memset(zeros, 0, size_t(size));
        Install(zeros, size_t(size));
        // Not 0, although the text is empty: callers fill it in (XStringTest, ConstructionFromASizeCountsItsZeros).
        m_Length = uint16_t(size - 1);
    }
}

XString::XString(const XBaseString& src)
{
    if (!src.IsEmpty()) {
        InstallCopy(src.Text(), src.Length());
    }
}

XString::XString(const XString& src) : XString(static_cast<const XBaseString&>(src)) {}

void XBaseString::Release(const XBaseString& record)
{
    if (record.m_Buffer != nullptr) {
        zm::DeleteText(record.m_Buffer, record.m_Allocated);
    }
}

void XString::Install(char* block, size_t size)
{
    m_Buffer = block;
    m_Allocated = uint16_t(size);
}

void XString::InstallCopy(const char* text, size_t count)
{
    if (char* block = zm::NewText(count + 1)) {
        Install(block, count + 1);
        memcpy(block, text, count);
        SetLength(count);
    }
}

void XString::SetLength(size_t length)
{
    m_Length = uint16_t(length);
    m_Buffer[length] = 0;
}

// Ensures a capacity of `count` characters, at most kMaxLength; a new block has exactly that size. `old` receives the
// old record: the caller releases it after reading its arguments, which may lie in it. Returns false, with nothing
// changed, if out of memory.
bool XString::EnsureCapacity(size_t count, XBaseString& old)
{
    if (count + 1 <= m_Allocated) {
        return true;
    }
    char* block = zm::NewText(count + 1);
    if (block == nullptr) {
        return false;
    }
    old = *this;
    Install(block, count + 1);
    memcpy(m_Buffer, old.Text(), m_Length);
    m_Buffer[m_Length] = 0;
    return true;
}

XString& XString::Assign(const char* text, size_t count)
{
    if (count == 0 || count > size_t(kMaxLength)) {
        Empty();
        return *this;
    }
    m_Length = 0;
    XBaseString old;
    if (!EnsureCapacity(count, old)) {
        Empty();
        return *this;
    }
    memmove(m_Buffer, text, count);
    SetLength(count);
    Release(old);
    return *this;
}

void XString::Empty()
{
    m_Length = 0;
    if (m_Buffer != nullptr) {
        *m_Buffer = 0;
    }
}

XString& XString::operator=(const char* text)
{
    return Assign(text, text != nullptr ? strlen(text) : 0);
}

XString& XString::operator=(const XBaseString& src)
{
    return &src != this ? Assign(src.Text(), src.Length()) : *this;
}

XString& XString::Create(const char* text, int length)
{
    if (length < 0 || length > kMaxLength) {
        Empty();
        return *this;
    }
    const size_t count = size_t(length);
    XBaseString old;
    if (!EnsureCapacity(count, old)) {
        Empty();
        return *this;
    }
    if (text != nullptr) {
        memmove(m_Buffer, text, count);
    } else {
        memset(m_Buffer, 0, count);
    }
    SetLength(count);
    Release(old);
    return *this;
}

XString& XString::CreateTail(const XBaseString& src, int start)
{
    const int first = start >= 0 && start <= src.Length() ? start : src.Length();
    return Create(src.Text() + first, src.Length() - first);
}

XString& XString::Format(const char* format, ...)
{
    char text[kFormatBuffer];
    va_list arguments;
    va_start(arguments, format);
    const int count = vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    return Assign(text, size_t(std::clamp(count, 0, kFormatBuffer - 1)));
}

XString& XString::FormatTime(const char* format)
{
    return AssignTime(int64_t(time(nullptr)), format);
}

XString& XString::FormatTime(int time, const char* format)
{
    return AssignTime(time, format);
}

XString& XString::AssignTime(int64_t time, const char* format)
{
    char text[kFormatBuffer] = "";
    tm parts;
    return Assign(text, zm::LocalTime(time, parts) ? strftime(text, sizeof(text), format, &parts) : 0);
}

XString& XString::Append(const char* text, size_t count)
{
    const size_t length = m_Length + count;
    XBaseString old;
    if (count > size_t(kMaxLength) || length > size_t(kMaxLength) || !EnsureCapacity(length, old)) {
        return *this;
    }
    memmove(m_Buffer + m_Length, text, count);
    SetLength(length);
    Release(old);
    return *this;
}

void XString::FitLength()
{
    if (m_Buffer != nullptr) {
        m_Length = uint16_t(strlen(m_Buffer));
    }
}

XString& XString::operator<<(const char* text)
{
    return text != nullptr && *text != 0 ? Append(text, strlen(text)) : *this;
}

XString& XString::operator<<(const XBaseString& string)
{
    return Append(string.Text(), string.Length());
}

XString& XString::operator<<(char character)
{
    return Append(&character, 1);
}

XString& XString::operator<<(int value)
{
    return AppendNumber(value);
}

XString& XString::operator<<(unsigned int value)
{
    return AppendNumber(value);
}

XString& XString::operator<<(float value)
{
    return *this << double(value);
}

XString& XString::operator<<(double value)
{
    return AppendFormat("%f", value);
}

XString& XString::operator<<(long long value)
{
    return AppendNumber(value);
}

XString& XString::operator<<(unsigned long long value)
{
    return AppendNumber(value);
}

XString& XString::operator<<(const void* pointer)
{
    return AppendFormat("%p", pointer);
}

// Writes like "%d" and "%u", but several times faster.
template <class Number>
XString& XString::AppendNumber(Number value)
{
    char text[24];
    const std::to_chars_result end = std::to_chars(text, text + sizeof(text), value);
    return Append(text, size_t(end.ptr - text));
}

// For a single value: the largest double gives the longest text.
XString& XString::AppendFormat(const char* format, ...)
{
    char text[320];
    va_list arguments;
    va_start(arguments, format);
    const int count = vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    return Append(text, size_t(std::max(count, 0)));
}

void XString::ToUpper()
{
    for (char* c = m_Buffer; c != nullptr && *c != 0; ++c) {
        *c = zm::ToUpper(*c);
    }
}

void XString::ToLower()
{
    for (char* c = m_Buffer; c != nullptr && *c != 0; ++c) {
        *c = zm::ToLower(*c);
    }
}

void XString::Trim()
{
    if (m_Length == 0) {
        return;
    }
    size_t end = m_Length, begin = 0;
    while (end > 0 && zm::IsSpace(m_Buffer[end - 1])) {
        --end;
    }
    while (begin < end && zm::IsSpace(m_Buffer[begin])) {
        ++begin;
    }
    memmove(m_Buffer, m_Buffer + begin, end - begin);
    SetLength(end - begin);
}

void XString::Strip()
{
    if (m_Length == 0) {
        return;
    }
    size_t read = 0;
    bool previous = false;
    for (; read < m_Length && !(previous && zm::IsSpace(m_Buffer[read])); ++read) {
        previous = zm::IsSpace(m_Buffer[read]);
    }
    // Stops one character short of the end and so loses the last one. Callers depend on this result
    // (XStringTest, ChangesInPlaceKeepTheStorage).
    size_t write = read;
    for (; read + 1 < m_Length; ++read) {
        const bool space = zm::IsSpace(m_Buffer[read]);
        if (!space) {
            m_Buffer[write++] = m_Buffer[read];
        } else if (!previous) {
            m_Buffer[write++] = ' ';
        }
        previous = space;
    }
    SetLength(write);
}

XString XString::Substring(uint16_t start, uint16_t length) const
{
    if (start >= m_Length) {
        return XString();
    }
    const int rest = m_Length - start;
    return XString(m_Buffer + start, length == 0 ? rest : std::min(int(length), rest));
}

void XString::Crop(uint16_t start, uint16_t length)
{
    if (m_Buffer != nullptr) {
        const int first = std::min(start, m_Length), count = std::min(int(length), m_Length - first);
        memmove(m_Buffer, m_Buffer + first, size_t(count));
        SetLength(size_t(count));
    }
}

void XString::Cut(uint16_t start, uint16_t length)
{
    if (start < m_Length) {
        const int count = std::min(int(length), m_Length - start), rest = m_Length - start - count;
        memmove(m_Buffer + start, m_Buffer + start + count, size_t(rest));
        SetLength(size_t(start) + size_t(rest));
    }
}

int XString::Replace(char from, char to)
{
    int count = 0;
    for (int i = 0; i < m_Length; ++i) {
        if (m_Buffer[i] == from) {
            m_Buffer[i] = to;
            ++count;
        }
    }
    return count;
}

int XString::Replace(const XBaseString& from, const XBaseString& to)
{
    if (m_Length == 0 || from.IsEmpty()) {
        return 0;
    }
    if (LiesIn(from.Text(), m_Buffer, m_Allocated) || LiesIn(to.Text(), m_Buffer, m_Allocated)) {
        return Replace(XString(from), XString(to));
    }
    return from.Length() == to.Length() ? Overwrite(from, to) : Rebuild(from, to);
}

int XString::Overwrite(const XBaseString& from, const XBaseString& to)
{
    int count = 0;
    char* at = m_Buffer;
    while ((at = const_cast<char*>(NextOccurrence(at, m_Buffer + m_Length, from))) != nullptr) {
        memcpy(at, to.Text(), to.Length());
        at += from.Length();
        ++count;
    }
    return count;
}

int XString::Rebuild(const XBaseString& from, const XBaseString& to)
{
    int count = 0;
    const char* end = m_Buffer + m_Length;
    for (const char* at = m_Buffer; (at = NextOccurrence(at, end, from)) != nullptr; at += from.Length()) {
        ++count;
    }
    const int64_t length = m_Length + (int64_t(to.Length()) - from.Length()) * count;
    if (length > kMaxLength) {
        return 0;
    }
    char* block = zm::NewText(size_t(length) + 1);
    if (block == nullptr) {
        return 0;
    }
    char* write = block;
    const char* read = m_Buffer;
    for (const char* at; (at = NextOccurrence(read, end, from)) != nullptr; read = at + from.Length()) {
        write = std::copy(read, at, write);
        write = std::copy_n(to.Text(), to.Length(), write);
    }
    memcpy(write, read, size_t(end - read));
    Release(*this);
    Install(block, size_t(length) + 1);
    SetLength(size_t(length));
    return count;
}

void XString::Reserve(uint16_t size)
{
    const size_t bytes = std::min(size_t(size), size_t(kMaxLength)) + 1;  // no string is longer than kMaxLength
    if (bytes > m_Allocated) {
        char* block = zm::NewText(bytes);
        if (block == nullptr) {
            return;
        }
        memcpy(block, Text(), m_Length);
        block[m_Length] = 0;
        Release(*this);
        Install(block, bytes);
    }
}
