#pragma once

#include <string>
#include <vector>

// The files that the benchmarks use: created on first use, removed at the end.
namespace bench {

constexpr int kBlock = 32768;
constexpr int kLargeFile = 256 << 20;
constexpr int kFileCount = 10000;

/// A new temporary folder.
const std::string& TestFolder();

/// A file of kLargeFile bytes.
const std::string& LargeFile();

/// A folder with kFileCount files in a hundred subfolders.
const std::string& ManyFiles();

/// A member of the archives: there are 10,000 of 1 to 64 KB, with names such as "models_city_door_0417.mesh".
struct Member {
    std::string name;
    const char* bytes;
    unsigned size;
};
constexpr int kMemberCount = 10000;
constexpr unsigned kLargestMember = 65536;
const std::vector<Member>& ArchiveMembers();

/// An archive of the members in the library's format, written without the library.
const std::string& ArchiveFile();
/// `entries` settings, 13 per section, in the library's nested text format and in the flat one of its peers.
const std::string& ConfigurationFile(int entries);
const std::string& IniFile(int entries);

}  // namespace bench
