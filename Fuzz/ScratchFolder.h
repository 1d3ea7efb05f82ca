#pragma once

#include "ZmLog.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

/// A folder for the files of a target, in memory where the system has a place for that. Silences the log: warnings
/// about damaged files would fill the disk.
class ScratchFolder {
public:
    ScratchFolder() : m_Folder(Parent() / ("ZmMath-fuzz-" + std::to_string(std::random_device()())))
    {
        std::filesystem::create_directory(m_Folder);
        ZmLog::GetLog().UnregisterListener("ZmMath");
        ZmLog::GetLog().UnregisterListener("OUTPUTDEBUG LISTENER");
    }
    ~ScratchFolder() { std::filesystem::remove_all(m_Folder); }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string operator/(const char* name) const { return (m_Folder / name).string(); }

private:
    static std::filesystem::path Parent()
    {
        std::error_code none;
        const std::filesystem::path memory = "/dev/shm";
        return is_directory(memory, none) ? memory : std::filesystem::temp_directory_path();
    }

    std::filesystem::path m_Folder;
};

inline void WriteFile(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
}

inline std::string ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}
