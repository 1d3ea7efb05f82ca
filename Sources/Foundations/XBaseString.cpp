#include "Platform/Characters.h"
#include "XString.h"

#include <algorithm>

// All positions below lie within the first Length() characters, so they fit in 16 bits.

const char XBaseString::s_Empty[1] = {0};

int XBaseString::Compare(const XBaseString& other) const
{
    const int order = memcmp(Text(), other.Text(), std::min(m_Length, other.m_Length));
    return order != 0 ? order : int(m_Length) - int(other.m_Length);
}

int XBaseString::ICompare(const XBaseString& other) const
{
    if (m_Length == 0) {
        return -int(other.m_Length);
    }
    if (other.m_Length == 0) {
        return m_Length;
    }
    const char *a = m_Buffer, *b = other.m_Buffer;
    while (*a != 0 && zm::ToLower(*a) == zm::ToLower(*b)) {
        ++a;
        ++b;
    }
    return zm::ToLower(*a) - zm::ToLower(*b);
}

uint16_t XBaseString::Find(char character, uint16_t start) const
{
    if (m_Length == 0 || start > m_Length) {
        return kNotFound;
    }
    const char* found = strchr(m_Buffer + start, character);
    return found != nullptr ? uint16_t(found - m_Buffer) : kNotFound;
}

uint16_t XBaseString::Find(const XBaseString& string, uint16_t start) const
{
    if (m_Length == 0 || string.m_Length == 0 || start > m_Length) {
        return kNotFound;
    }
    const char* found = strstr(m_Buffer + start, string.m_Buffer);
    return found != nullptr ? uint16_t(found - m_Buffer) : kNotFound;
}

uint16_t XBaseString::IFind(const XBaseString& string, uint16_t start) const
{
    XString text(*this), wanted(string);
    text.ToLower();
    wanted.ToLower();
    return text.Find(wanted, start);
}

uint16_t XBaseString::RFind(char character, uint16_t end) const
{
    if (m_Length == 0) {
        return kNotFound;
    }
    size_t i = strnlen(m_Buffer, std::min(end, m_Length));
    if (character == 0) {
        return uint16_t(i);
    }
    while (i > 0) {
        if (m_Buffer[--i] == character) {
            return uint16_t(i);
        }
    }
    return kNotFound;
}
