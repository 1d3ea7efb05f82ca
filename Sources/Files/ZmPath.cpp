#include "ZmPath.h"

#include "Platform/Characters.h"
#include "Platform/OrEmpty.h"
#include "Platform/OutOfMemory.h"
#include "Platform/PathText.h"

#include <algorithm>
#include <stdio.h>
#include <string>

namespace {

constexpr unsigned long kFailure = 0xFFFFFFFF;
constexpr char kFilePrefix[] = "file://";

// Copies a part of a path. Returns false if it does not fit with its terminator.
template <size_t Size>
bool CopyPart(char (&res)[Size], const char* begin, const char* end)
{
    const size_t length = size_t(end - begin);
    if (length >= Size) {
        return false;
    }
    *std::copy(begin, end, res) = 0;
    return true;
}

// An over-long path is stored as an empty one.
template <size_t Size>
void StorePath(char (&res)[Size], const std::string& path)
{
    if (!CopyPart(res, path.data(), path.data() + path.size())) {
        res[0] = 0;
    }
}

void AppendSeparator(std::string& path)
{
    if (!path.empty() && !zm::IsSeparator(path.back())) {
        path += '\\';
    }
}

// The characters that ZmEscapeURL() replaces. Not for the terminator.
bool IsEscaped(char c)
{
    return strchr(" \\+,;=@[]^{}", c) != nullptr;
}

bool BeginsWithFilePrefix(const char* text)
{
    const char* prefix = kFilePrefix;
    while (*prefix != 0 && zm::ToLower(*text) == *prefix) {
        ++text;
        ++prefix;
    }
    return *prefix == 0;
}

unsigned long SetText(XString& out, const std::string& text)
{
    const bool fits = text.size() <= size_t(XString::kMaxLength);
    out = fits ? text.c_str() : nullptr;
    return size_t(out.Length()) == text.size() ? 0 : kFailure;
}

std::string Escaped(const char* in)
{
    std::string url = strstr(in, "://") == nullptr ? kFilePrefix : "";
    for (const char* c = in; *c != 0; ++c) {
        if (*c == '\\') {
            url += '/';
        } else if (IsEscaped(*c)) {
            char code[4];
            snprintf(code, sizeof(code), "%%%02x", unsigned(static_cast<unsigned char>(*c)));
            url += code;
        } else {
            url += *c;
        }
    }
    return url;
}

}  // namespace

RKPathSplitter::RKPathSplitter(const char* path)
{
    const char* text = zm::OrEmpty(path);
    const char *end = text + strlen(text), *dir = end - text >= 2 && text[1] == ':' ? text + 2 : text;
    const char* name = end;
    while (name != dir && !zm::IsSeparator(name[-1])) {
        --name;
    }
    const char* extension = end;
    for (const char* c = name; c != end; ++c) {
        extension = *c == '.' ? c : extension;
    }
    CopyPart(m_Drive, text, dir);  // a letter and a colon, or nothing
    if (!CopyPart(m_Dir, dir, name) || !CopyPart(m_Name, name, extension) || !CopyPart(m_Extension, extension, end)) {
        m_Drive[0] = m_Dir[0] = m_Name[0] = m_Extension[0] = 0;
    }
}

RKPathMaker::RKPathMaker(const char* drive, const char* dir, const char* name, const char* extension)
{
    m_Path[0] = 0;
    zm::UnlessOutOfMemory(0, [&] {
        std::string path;
        if (*zm::OrEmpty(drive) != 0) {
            path = std::string(1, *drive) + ':';
        }
        if (*zm::OrEmpty(dir) != 0) {
            path += dir;
            AppendSeparator(path);
        }
        path += zm::OrEmpty(name);
        if (*zm::OrEmpty(extension) != 0) {
            path += *extension == '.' ? "" : ".";
            path += extension;
        }
        StorePath(m_Path, path);
        return 1;
    });
}

int ZmMakePath(char* out, const char* dir, const char* file)
{
    constexpr size_t kMaxPath = 260;
    const int done = zm::UnlessOutOfMemory(0, [&] {
        std::string path = zm::OrEmpty(dir);
        AppendSeparator(path);
        path += zm::OrEmpty(file);
        if (path.size() >= kMaxPath) {
            return 0;
        }
        memcpy(out, path.c_str(), path.size() + 1);
        return 1;
    });
    if (done == 0) {
        *out = 0;
    }
    return done;
}

void ZmAddDirectorySeparator(XString& path)
{
    path << '\\';
}

void ZmConvertPathToSystemPath(XString& path)
{
    const bool hasDrive = path.Length() > 2 && zm::IsLetter(path[0]) && path[1] == ':' && path[2] == '\\';
    XString prefix(path.Substring(0, hasDrive ? 3 : 0)), rest;
    rest.CreateTail(path, hasDrive ? 3 : 0);
    rest.Replace(':', '\\');
    rest.Replace('/', '\\');
    path = hasDrive ? prefix + rest : rest;
}

unsigned long ZmEscapeURL(const char* in, XString& out)
{
    if (in == nullptr) {
        out = nullptr;
        return kFailure;
    }
    const char* end = in + strlen(in);
    if (BeginsWithFilePrefix(in) || std::none_of(in, end, IsEscaped)) {
        return zm::UnlessOutOfMemory(kFailure, [&] { return SetText(out, in); });
    }
    return zm::UnlessOutOfMemory(kFailure, [&] { return SetText(out, Escaped(in)); });
}

void ZmUnEscapeUrl(XString& text)
{
    zm::UnlessOutOfMemory(0, [&] {
        std::string plain;
        const char *c = text.Text(), *end = c + text.Length();
        for (; c != end; ++c) {
            if (*c == '%' && end - c > 2) {
                // Two decimal digits, not hexadecimal, and the number is inserted as text. Callers depend on this
                // (ZmPathTest, UnescapingReadsTwoDecimalDigits).
                plain += std::to_string((c[1] - '0') * 10 + (c[2] - '0'));
                c += 2;
            } else {
                plain += *c;
            }
        }
        text.Create(plain.data(), int(std::min(plain.size(), size_t(XString::kMaxLength))));
        return 1;
    });
}
