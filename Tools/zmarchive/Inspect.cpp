#include "Commands.h"

#include "Sha256.h"
#include "Text.h"
#include "Warnings.h"
#include "ZmBigFile.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <set>

namespace {

void ListTable(ZmBigFile& archive)
{
    const int count = archive.GetEntryCount();
    for (int i = 0; i < count; ++i) {
        std::printf("%10s  %s%s\n", SizeText(archive.GetEntrySize(i)).c_str(),
                    Printable(archive.GetEntryName(i)).c_str(), IsWhole(archive, i) ? "" : "  (incomplete)");
    }
    std::printf("%10s  in %s\n", SizeText(TotalSize(archive)).c_str(), CountText(uint64_t(count)).c_str());
}

void ListJson(ZmBigFile& archive)
{
    std::printf("[");
    for (int i = 0; i < archive.GetEntryCount(); ++i) {
        std::printf("%s\n  {\"name\": %s, \"size\": %u, \"whole\": %s}", i == 0 ? "" : ",",
                    JsonText(archive.GetEntryName(i)).c_str(), archive.GetEntrySize(i),
                    IsWhole(archive, i) ? "true" : "false");
    }
    std::printf("\n]\n");
}

std::string HashOf(ZmBigFile& archive, int position)
{
    Sha256 hash;
    ReadEntry(archive, position, [&](const char* bytes, size_t size) { hash.Add(bytes, size); });
    return hash.Finish();
}

/// The hashes by name in lower case. The lines are those of sha256sum: the hash, two characters, the name.
std::map<std::string, std::string> ReadHashes(const std::string& path)
{
    std::ifstream file(path);
    std::istream& lines = IsStream(path) ? std::cin : file;
    std::map<std::string, std::string> res;
    for (std::string line; std::getline(lines, line);) {
        if (line.size() < 67 || line.find_first_not_of("0123456789abcdef") != 64) {
            throw Failure(Printable(path) + " is no list of SHA-256 hashes: " + Printable(line));
        }
        std::string name = LowerCase(line.substr(66));
        if (name.compare(0, 2, "./") == 0) {
            name.erase(0, 2);
        }
        res[name] = line.substr(0, 64);
    }
    if (lines.bad() || !lines.eof()) {
        throw Failure(Printable(path) + " cannot be read");
    }
    return res;
}

/// Prints how entries and list differ, and returns the number of differences.
int CompareHashes(ZmBigFile& archive, std::map<std::string, std::string> hashes)
{
    int problems = 0;
    const auto tell = [&](const std::string& name, const char* what) {
        std::printf("%s %s\n", Printable(name).c_str(), what);
        ++problems;
    };
    for (int i = 0; i < archive.GetEntryCount(); ++i) {
        const std::string name = archive.GetEntryName(i);
        const auto found = hashes.find(LowerCase(name));
        if (found == hashes.end()) {
            tell(name, "is not in the list");
            continue;
        }
        if (IsWhole(archive, i) && HashOf(archive, i) != found->second) {
            tell(name, "has other bytes than the list says");
        }
        hashes.erase(found);
    }
    for (const auto& [name, hash] : hashes) {
        tell(name, "is not in the archive");
    }
    return problems;
}

}  // namespace

uint64_t TotalSize(const ZmBigFile& archive)
{
    uint64_t total = 0;
    for (int i = 0; i < archive.GetEntryCount(); ++i) {
        total += archive.GetEntrySize(i);
    }
    return total;
}

int List(const Arguments& arguments)
{
    ZmBigFile archive;
    OpenArchive(archive, arguments);
    if (arguments.Has(Arguments::JSON)) {
        ListJson(archive);
    } else if (arguments.Has(Arguments::NAMES)) {
        for (int i = 0; i < archive.GetEntryCount(); ++i) {
            std::printf("%s\n", Printable(archive.GetEntryName(i)).c_str());
        }
    } else if (arguments.Has(Arguments::SHA256)) {
        for (int i = 0; i < archive.GetEntryCount(); ++i) {
            std::printf("%s  %s\n", HashOf(archive, i).c_str(), Printable(archive.GetEntryName(i)).c_str());
        }
    } else {
        ListTable(archive);
    }
    return 0;
}

int Verify(const Arguments& arguments)
{
    ZmBigFile archive;
    OpenArchive(archive, arguments);
    int problems = WarningCount(), again = 0, folders = 0, capitals = 0;
    uint64_t end = 8;
    std::set<std::string> names;
    for (int i = 0; i < archive.GetEntryCount(); ++i) {
        const std::string name = archive.GetEntryName(i);
        if (!IsWhole(archive, i)) {
            std::printf("%s is incomplete\n", Printable(name).c_str());
            ++problems;
        }
        end += name.size() + 5 + archive.GetEntrySize(i);
        again += !names.insert(name).second;
        folders += name.find_first_of("/\\") != std::string::npos;
        capitals += name != LowerCase(name);
    }
    const uint64_t size = std::filesystem::file_size(arguments.archive);
    if (problems == 0 && size > end) {
        std::printf("%s after the last entry belong to no entry\n", SizeText(size - end).c_str());
        ++problems;
    }
    const bool hashes = arguments.Has(Arguments::AGAINST);
    if (hashes) {
        problems += CompareHashes(archive, ReadHashes(arguments.against));
    }
    const auto note = [](int count, const char* what) {
        if (count != 0) {
            std::printf("note: %s %s\n", CountText(uint64_t(count)).c_str(), what);
        }
    };
    note(again, "with the name of an earlier entry, which is no longer found by name");
    note(folders, "with a folder in the name, which ZmBigFile::Find() does not find");
    note(capitals, "with capitals in the name, which cannot be found by name");
    std::printf("%s: %s of %s\n%s\n", problems == 0 ? "sound" : "DAMAGED",
                CountText(uint64_t(archive.GetEntryCount())).c_str(), SizeText(TotalSize(archive)).c_str(),
                hashes ? "The structure was checked, and the bytes of the entries against the list."
                       : "The format has no checksum: the structure was checked, not the bytes of the entries.");
    return problems == 0 ? 0 : 1;
}
