#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Reads and writes the archive format without the library, as names with the bytes of their entries.
typedef std::vector<std::pair<std::string, std::string>> Members;

inline std::string WordBytes(uint32_t word)
{
    return {char(word), char(word >> 8), char(word >> 16), char(word >> 24)};
}

inline std::string ArchiveBytes(const Members& members)
{
    std::string index, data;
    for (const auto& [name, bytes] : members) {
        index += name + '\0' + WordBytes(uint32_t(bytes.size()));
        data += bytes;
    }
    return "ZMBG" + WordBytes(uint32_t(index.size())) + index + data;
}

/// The members of a valid archive, which must be consumed entirely; throws std::out_of_range for any other.
inline Members MembersOf(const std::string& archive)
{
    const auto word = [&](size_t at) {
        uint32_t res = 0;
        for (size_t i = 4; i > 0; --i) {
            res = res << 8 | uint8_t(archive.at(at + i - 1));
        }
        return res;
    };
    Members members;
    size_t data = 8 + word(4);
    for (size_t at = 8, end = data; at < end;) {
        const std::string name = archive.c_str() + at;
        const uint32_t size = word(at + name.size() + 1);
        members.emplace_back(name, archive.substr(data, size));
        at += name.size() + 5;
        data += size;
    }
    if (archive.substr(0, 4) != "ZMBG" || data != archive.size()) {
        members.emplace_back("the file is not what its index says", "");
    }
    return members;
}
