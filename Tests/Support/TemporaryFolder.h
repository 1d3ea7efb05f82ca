#pragma once

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

/// A temporary folder for one test, empty at first; removed at the end with everything in it.
class TemporaryFolder {
public:
    enum Place {
        ANYWHERE,
        IN_MEMORY  ///< where the system has such a place and TMPDIR names no other; no process waits for a disk there
    };

    explicit TemporaryFolder(Place place = ANYWHERE)
    {
        std::random_device random;
        const auto nameIn = [&](const std::filesystem::path& parent) {
            return parent / ("ZmMath-" + std::to_string(random()));
        };
        if (place == IN_MEMORY && getenv("TMPDIR") == nullptr) {
            m_Path = nameIn("/dev/shm");
            std::error_code failed;
            if (create_directory(m_Path, failed)) {
                return;
            }
        }
        do {
            m_Path = nameIn(std::filesystem::temp_directory_path());
        } while (!create_directory(m_Path));
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// With '/' as separator, which every platform accepts.
    std::string Path() const { return m_Path.generic_string(); }
    std::string operator/(const std::string& name) const { return Path() + '/' + name; }

    /// The names of what is in it, sorted.
    std::vector<std::string> Files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_Path)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::filesystem::path m_Path;
};

/// The bytes of a file, read without any of the library's classes; empty if it cannot be read.
inline std::string BytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void MakeFile(const std::string& path, const std::string& bytes = "")
{
    std::ofstream(path, std::ios::binary) << bytes;
}

/// The same path with the other separator.
inline std::string WithBackslashes(std::string path)
{
    for (char& c : path) {
        c = c == '/' ? '\\' : c;
    }
    return path;
}
