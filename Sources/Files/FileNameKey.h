#pragma once

#include "Platform/Characters.h"
#include "Platform/PathText.h"
#include "Platform/Unaligned.h"
#include "XString.h"
#include "ZmPath.h"

#include <algorithm>
#include <stdint.h>
#include <string.h>

namespace zm {

/// The name and extension of a path in lower case, as RKPathSplitter would split them off.
class FileNameKey : public XBaseString {
public:
    explicit FileNameKey(const char* path)
    {
        const size_t length = strlen(path);
        if (length >= 8 && length <= kLongestPart) {
            SetShort(path, length);
        } else {
            SetAny(path);
        }
    }
    FileNameKey(const FileNameKey&) = delete;
    FileNameKey& operator=(const FileNameKey&) = delete;

private:
    static constexpr size_t kLongestPart = 255;

    static constexpr uint64_t Repeated(unsigned char byte) { return byte * uint64_t(0x0101010101010101); }

    // Lower-cases eight characters at once: the additions set the top bit of each byte that passes a bound.
    static uint64_t LowerCaseOf(uint64_t text)
    {
        const uint64_t low = text & Repeated(0x7F);
        const uint64_t fromA = low + Repeated(0x80 - 'A'), beyondZ = low + Repeated(0x80 - 'Z' - 1);
        return text | ((fromA & ~beyondZ & ~text & Repeated(0x80)) >> 2);
    }

    // Whether any of the eight bytes equals `character`: only a zero byte of `different` borrows into its top bit.
    static bool Contains(uint64_t text, char character)
    {
        const uint64_t different = text ^ Repeated(static_cast<unsigned char>(character));
        return ((different - Repeated(1)) & ~different & Repeated(0x80)) != 0;
    }

    // No part can exceed the splitter's limit here, so only the last separator matters. Works on eight characters at a
    // time; the last group may overlap the one before.
    void SetShort(const char* path, size_t length)
    {
        bool hasFolder = path[1] == ':';
        for (size_t at = 0; at < length; at += 8) {
            const size_t start = std::min(at, length - 8);
            uint64_t word = LoadUnaligned<uint64_t>(path + start);
            hasFolder = hasFolder || Contains(word, '/') || Contains(word, '\\');
            word = LowerCaseOf(word);
            memcpy(m_Text + start, &word, 8);
        }
        m_Text[length] = 0;
        size_t name = 0;
        if (hasFolder) {
            const size_t drive = path[1] == ':' ? 2 : 0;
            for (name = length; name != drive && !IsSeparator(path[name - 1]);) {
                --name;
            }
        }
        m_Buffer = m_Text + name;
        m_Length = uint16_t(length - name);
    }

    // A path with an over-long part splits into empty parts, so its key is empty.
    void SetAny(const char* path)
    {
        const RKPathSplitter parts(path);
        char* end = m_Text;
        for (const char* part : {parts.GetName(), parts.GetExtension()}) {
            end = std::transform(part, part + strlen(part), end, ToLower);
        }
        *end = 0;
        m_Buffer = m_Text;
        m_Length = uint16_t(end - m_Text);
    }

    char m_Text[2 * kLongestPart + 2];
};

}  // namespace zm
