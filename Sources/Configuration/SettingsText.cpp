#include "Configuration/SettingsText.h"

#include "Platform/Characters.h"

#include <algorithm>
#include <string.h>

namespace zm {

namespace {

std::string Escape(unsigned char c)
{
    static constexpr char digits[] = "0123456789abcdef";
    return {'%', digits[c >> 4], digits[c & 15]};
}

/// Escapes control characters and those of `special`; blanks and bytes beyond ASCII stay readable.
std::string Escaped(const std::string& text, const char* special)
{
    std::string res;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        res += byte < ' ' || byte == 0x7f || strchr(special, c) != nullptr ? Escape(byte) : std::string(1, c);
    }
    return res;
}

int DigitOf(char c)
{
    return c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

std::string Unescaped(const std::string& text)
{
    std::string res;
    for (size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? DigitOf(text[i + 1]) : -1;
        const int low = high >= 0 ? DigitOf(text[i + 2]) : -1;
        res += low >= 0 ? char(high * 16 + low) : text[i];
        i += low >= 0 ? 2 : 0;
    }
    return res;
}

/// Positions in the text: the beginning of a line, of its value, and the end of the line.
struct Line {
    size_t begin, value, end;
};

bool SameName(const std::string& a, const std::string& b)
{
    bool same = a.size() == b.size();
    for (size_t i = 0; same && i < a.size(); ++i) {
        same = ToLower(a[i]) == ToLower(b[i]);
    }
    return same;
}

bool FindLine(const std::string& text, const std::string& name, Line& res)
{
    for (size_t begin = 0, end = 0; begin < text.size(); begin = end + 1) {
        end = std::min(text.find('\n', begin), text.size());
        const size_t equal = text.find('=', begin);
        if (equal < end && SameName(Unescaped(text.substr(begin, equal - begin)), name)) {
            res = {begin, equal + 1, end};
            return true;
        }
    }
    return false;
}

}  // namespace

bool FindSetting(const std::string& text, const std::string& name, std::string& res)
{
    Line line;
    const bool found = FindLine(text, name, line);
    if (found) {
        res = Unescaped(text.substr(line.value, line.end - line.value));
    }
    return found;
}

std::string WithSetting(const std::string& text, const std::string& name, const std::string& value)
{
    Line line;
    std::string res = text;
    if (FindLine(text, name, line)) {
        return res.replace(line.value, line.end - line.value, Escaped(value, "%"));
    }
    if (!res.empty() && res.back() != '\n') {
        res += '\n';
    }
    return res + Escaped(name, "%=") + '=' + Escaped(value, "%") + '\n';
}

std::string SettingsPath(const std::string& key)
{
    constexpr size_t kLongestPart = 200;
    std::string res;
    size_t part = 0;
    for (const char c : key) {
        const char lower = ToLower(c);
        const bool plain = (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-' || c == ' ';
        if (res.size() - part > kLongestPart) {
            res += "%/";
            part = res.size();
        }
        res += plain ? std::string(1, lower) : Escape(static_cast<unsigned char>(c));
    }
    return res + ".settings";
}

}  // namespace zm
