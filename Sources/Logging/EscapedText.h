#pragma once

#include <stddef.h>

namespace zm {

constexpr size_t kLongestEscape = 4;

inline bool IsControl(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

/// Copies `length` characters with control characters as "\x0a", so that a text cannot begin a line of its own or steer
/// a terminal. Stops where the next one has no room. Returns the number of characters written.
inline size_t EscapeText(char* res, size_t room, const char* text, size_t length)
{
    constexpr char kDigits[] = "0123456789abcdef";
    size_t end = 0;
    for (const char* c = text; c != text + length; ++c) {
        const size_t size = IsControl(*c) ? kLongestEscape : 1;
        if (size > room - end) {
            break;
        }
        if (size == 1) {
            res[end] = *c;
        } else {
            const auto byte = static_cast<unsigned char>(*c);
            res[end] = '\\';
            res[end + 1] = 'x';
            res[end + 2] = kDigits[byte >> 4];
            res[end + 3] = kDigits[byte & 15];
        }
        end += size;
    }
    return end;
}

}  // namespace zm
