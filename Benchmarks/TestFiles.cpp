#include "TestFiles.h"

#include "Inputs.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <stdexcept>
#include <vector>

namespace bench {
namespace {

class Folder {
public:
    Folder() : m_Path(std::filesystem::temp_directory_path() / ("bench-" + std::to_string(std::random_device()())))
    {
        std::filesystem::create_directories(m_Path);
    }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string Path() const { return m_Path.string(); }

private:
    std::filesystem::path m_Path;
};

constexpr int kEntriesOfSection = 13;

/// Calls open(depth, name) and close(depth, name) for sections of three levels, a hundred parts and ten groups, and
/// add(name, value) for entries.
template <class Open, class Add, class Close>
void EachSetting(int entries, Open open, Add add, Close close)
{
    const int sections = entries / kEntriesOfSection, steps[] = {(sections + 9) / 10, (sections + 99) / 100, 1};
    constexpr const char* names[] = {"group_", "part_", "section_"};
    for (int i = 0; i < sections; ++i) {
        for (int depth = 0; depth < 3; ++depth) {
            if (i % steps[depth] == 0) {
                open(depth, names[depth] + std::to_string(i));
            }
        }
        for (int k = 0; k < kEntriesOfSection; ++k) {
            add("setting_number_" + std::to_string(k), "value " + std::to_string(k) + " of " + std::to_string(i));
        }
        for (int depth = 2; depth >= 0; --depth) {
            if ((i + 1) % steps[depth] == 0 || i + 1 == sections) {
                close(depth, names[depth] + std::to_string(i - i % steps[depth]));
            }
        }
    }
}

/// One file per number, created once by write(stream, number).
template <class Write>
const std::string& FileFor(std::map<int, std::string>& made, int number, const char* ending, Write write)
{
    std::string& name = made[number];
    if (name.empty()) {
        name = TestFolder() + "/" + std::to_string(number) + ending;
        std::ofstream stream(name);
        write(stream, number);
        if (!stream.flush()) {
            throw std::runtime_error("no room for " + name);
        }
    }
    return name;
}

void WriteConfiguration(std::ostream& file, int entries)
{
    const auto blanks = [](int depth) { return std::string(2 * size_t(depth), ' '); };
    EachSetting(
        entries, [&](int depth, const std::string& name) { file << blanks(depth) << '<' << name << ">\n"; },
        [&](const std::string& name, const std::string& value) { file << blanks(3) << name << " = " << value << '\n'; },
        [&](int depth, const std::string& name) { file << blanks(depth) << "</" << name << ">\n"; });
}

void WriteIni(std::ostream& file, int entries)
{
    std::string path[3];
    EachSetting(
        entries,
        [&](int depth, const std::string& name) {
            path[depth] = name;
            if (depth == 2) {
                file << '[' << path[0] << '.' << path[1] << '.' << path[2] << "]\n";
            }
        },
        [&](const std::string& name, const std::string& value) { file << name << " = " << value << '\n'; },
        [](int, const std::string&) {});
}

}  // namespace

const std::string& ConfigurationFile(int entries)
{
    static std::map<int, std::string> made;
    return FileFor(made, entries, ".cfg", WriteConfiguration);
}

const std::string& IniFile(int entries)
{
    static std::map<int, std::string> made;
    return FileFor(made, entries, ".ini", WriteIni);
}

const std::string& TestFolder()
{
    static const Folder folder;
    static const std::string path = folder.Path();
    return path;
}

const std::string& LargeFile()
{
    static const std::string path = [] {
        const std::string name = TestFolder() + "/large";
        std::ofstream file(name, std::ios::binary);
        std::vector<char> block(kBlock);
        for (int i = 0; i < kLargeFile / kBlock; ++i) {
            for (size_t k = 0; k < block.size(); k += 16) {
                block[k] = char(i * 7 + int(k) / 16);
            }
            file.write(block.data(), kBlock);
        }
        if (!file) {
            throw std::runtime_error("no room for " + name);
        }
        return name;
    }();
    return path;
}

const std::string& ManyFiles()
{
    static const std::string path = [] {
        const std::string name = TestFolder() + "/many";
        for (int i = 0; i < kFileCount; ++i) {
            const std::string folder = name + "/folder" + std::to_string(i / 100);
            std::filesystem::create_directories(folder);
            std::ofstream(folder + "/file" + std::to_string(i) + ".txt");
        }
        return name;
    }();
    return path;
}

const std::vector<Member>& ArchiveMembers()
{
    static const std::vector<Member> members = [] {
        constexpr size_t kBlockSize = 2 * kLargestMember;
        static std::vector<char> block(kBlockSize);
        std::mt19937 random(1);
        std::generate(block.begin(), block.end(), [&] { return char(random()); });
        std::vector<Member> res;
        const char* const* names = PathNames(kMemberCount);
        for (int i = 0; i < kMemberCount; ++i) {
            std::string name = names[i];
            std::transform(name.begin(), name.end(), name.begin(), [](char c) {
                return c == '/' ? '_' : c >= 'A' && c <= 'Z' ? char(c + ('a' - 'A')) : c;
            });
            const char* bytes = block.data() + random() % kLargestMember;
            res.push_back({name, bytes, 1024 + unsigned(random() % (kLargestMember - 1023))});
        }
        return res;
    }();
    return members;
}

const std::string& ArchiveFile()
{
    static const std::string path = [] {
        const auto word = [](size_t value) {
            return std::string{char(value), char(value >> 8), char(value >> 16), char(value >> 24)};
        };
        std::string index;
        for (const Member& member : ArchiveMembers()) {
            index += member.name + '\0' + word(member.size);
        }
        const std::string name = TestFolder() + "/archive";
        std::ofstream file(name, std::ios::binary);
        file << "ZMBG" << word(index.size()) << index;
        for (const Member& member : ArchiveMembers()) {
            file.write(member.bytes, member.size);
        }
        if (!file.flush()) {
            throw std::runtime_error("no room for " + name);
        }
        return name;
    }();
    return path;
}

}  // namespace bench
