#include "Archive.h"

#include "ZmBigFile.h"

#include <filesystem>

bool PackFiles(const std::string& archive, const std::vector<std::string>& paths, std::string& error)
{
    ZmBigFile files;
    for (const std::string& path : paths) {
        const std::string name = std::filesystem::path(path).filename().string();
        if (!files.Append(name.c_str(), path.c_str(), 1, 0)) {
            error = path + ": cannot be read";
            return false;
        }
    }
    if (files.Save(archive.c_str(), nullptr)) {
        return true;
    }
    error = archive + ": cannot be written";
    return false;
}

bool ReadPacked(const std::string& archive, const std::string& path, std::string& bytes, std::string& error)
{
    ZmBigFile files;
    ZmSubFile file;
    if (!files.Open(archive.c_str(), 0) || !files.Find(path.c_str(), &file) || !file.IsValid()) {
        error = path + ": is empty, or not in " + archive;
        return false;
    }
    bytes.resize(file.Size());
    file.Read(bytes.data(), file.Size());
    return true;
}
