#include "Text.h"

#include <algorithm>
#include <cstdio>

namespace {

/// The bytes of the UTF-8 character at a position, or 0 if there is none.
size_t CharacterLength(const std::string& text, size_t at)
{
    const auto byte = [&](size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u; };
    const unsigned first = byte(at);
    if (first < 0x80) {
        return 1;
    }
    const size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
    for (size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    // Overlong forms, surrogates, and what lies beyond the last character.
    const unsigned second = byte(at + 1);
    const bool wrong = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                       (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
    return wrong ? 0 : length;
}

}  // namespace

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

std::string JsonText(const std::string& text)
{
    std::string res = "\"";
    for (size_t at = 0; at < text.size();) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const size_t length = CharacterLength(text, at);
        if (length > 1 || (length == 1 && byte >= 0x20 && byte != '"' && byte != '\\')) {
            res.append(text, at, length);
        } else {
            char code[8];
            std::snprintf(code, sizeof(code), "\\u%04x", unsigned(length == 0 ? 0xDC00 + byte : byte));
            res += code;
        }
        at += std::max(length, size_t(1));
    }
    return res + '"';
}

std::string LowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
    return text;
}
