#include "Configuration/ValueText.h"

#include <charconv>
#include <cmath>
#include <string.h>

namespace zm {

namespace {

template <class Number>
bool ParseNumber(const char* text, Number& res)
{
    const char* const end = text + strlen(text);
    const char* const begin = *text == '+' && text[1] != '-' ? text + 1 : text;
    Number number{};
    const std::from_chars_result result = std::from_chars(begin, end, number);
    if (result.ec != std::errc() || result.ptr != end) {
        return false;
    }
    res = number;
    return true;
}

}  // namespace

bool ParseValue(const char* text, int& res)
{
    return ParseNumber(text, res);
}

bool ParseValue(const char* text, unsigned& res)
{
    return ParseNumber(text, res);
}

// Words such as "inf" are no numbers to people who write files.
bool ParseValue(const char* text, float& res)
{
    float number = 0.0f;
    if (!ParseNumber(text, number) || !std::isfinite(number)) {
        return false;
    }
    res = number;
    return true;
}

bool ParseValue(const char* text, bool& res)
{
    static constexpr const char* kWords[] = {"false", "true", "no", "yes", "off", "on", "0", "1"};
    XString lower(text);
    lower.ToLower();
    for (size_t i = 0; i < sizeof(kWords) / sizeof(*kWords); ++i) {
        if (lower == kWords[i]) {
            res = i % 2 != 0;
            return true;
        }
    }
    return false;
}

XString FloatText(float value)
{
    char text[64];
    *std::to_chars(text, text + sizeof(text) - 1, value).ptr = 0;
    return XString(text);
}

}  // namespace zm
