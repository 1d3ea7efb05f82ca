#include "Text.h"

#include <algorithm>
#include <cstdio>

std::string SizeText(uint64_t bytes)
{
    if (bytes < 1024) {
        return std::to_string(bytes) + " B";
    }
    static const char* const kUnits[] = {"KB", "MB", "GB"};
    double size = double(bytes) / 1024;
    int unit = 0;
    for (; size >= 999.95 && unit < 2; ++unit) {
        size /= 1024;
    }
    char text[32];
    std::snprintf(text, sizeof(text), "%.1f %s", size, kUnits[unit]);
    return text;
}

std::string CountText(uint64_t count)
{
    return std::to_string(count) + (count == 1 ? " entry" : " entries");
}

std::string Printable(const std::string& text)
{
    std::string res;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F) {
            char code[8];
            std::snprintf(code, sizeof(code), "\\x%02x", unsigned(byte));
            res += code;
        } else {
            res += c;
        }
    }
    return res;
}

std::string LowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
    return text;
}
