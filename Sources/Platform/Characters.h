#pragma once

namespace zm {

// Character classes of the "C" locale, whatever locale the program has set. Bytes above 127 are neither letters nor
// white space.

inline char ToLower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c + ('a' - 'A')) : c;
}

inline char ToUpper(char c)
{
    return c >= 'a' && c <= 'z' ? char(c - ('a' - 'A')) : c;
}

inline bool IsLetter(char c)
{
    return ToLower(c) >= 'a' && ToLower(c) <= 'z';
}

inline bool IsSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace zm
