#pragma once

#include <algorithm>
#include <string>

// Operations on ASCII texts, written with the standard library: what those of XString must give.

inline bool IsSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

inline std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return char(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c); });
    return text;
}

inline std::string Upper(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return char(c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c); });
    return text;
}

inline std::string Trimmed(const std::string& text)
{
    const auto first = std::find_if_not(text.begin(), text.end(), IsSpace);
    return {first, std::find_if_not(text.rbegin(), std::make_reverse_iterator(first), IsSpace).base()};
}

/// Each run of white space as one blank, as XString::Strip() does it.
inline std::string Stripped(const std::string& text)
{
    const auto bothSpace = [](char a, char b) { return IsSpace(a) && IsSpace(b); };
    const auto run = std::adjacent_find(text.begin(), text.end(), bothSpace);
    if (run == text.end()) {
        return text;
    }
    std::string res(text.begin(), run + 1);
    for (auto c = run + 1; c != text.end() - 1; ++c) {  // the last character is lost
        if (!IsSpace(*c)) {
            res += *c;
        } else if (!IsSpace(res.back())) {
            res += ' ';
        }
    }
    return res;
}
