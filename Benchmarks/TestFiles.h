#pragma once

#include <string>
#include <vector>

// What the benchmarks of files work on: made on first use, removed at the end.
namespace bench {

constexpr int kBlock = 32768;
constexpr int kLargeFile = 256 << 20;
constexpr int kFileCount = 10000;

/// A new folder among the temporary files.
const std::string& TestFolder();

/// A file of kLargeFile bytes.
const std::string& LargeFile();

/// A folder with kFileCount files in a hundred subfolders.
const std::string& ManyFiles();

/// What archives are made of: 10,000 members of 1 to 64 KB, with names such as "models_city_door_0417.mesh".
struct Member {
    std::string name;
    const char* bytes;
    unsigned size;
};
constexpr int kMemberCount = 10000;
constexpr unsigned kLargestMember = 65536;
const std::vector<Member>& ArchiveMembers();

/// An archive of the members in the library's format, written without it.
const std::string& ArchiveFile();
/// So many settings, 13 to a section, in the library's nested text format and in the flat one of its peers.
const std::string& ConfigurationFile(int entries);
const std::string& IniFile(int entries);

}  // namespace bench
