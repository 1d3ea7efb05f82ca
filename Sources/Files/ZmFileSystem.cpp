#include "ZmFileSystem.h"

#include "Platform/Characters.h"
#include "Platform/OsFiles.h"
#include "Platform/OutOfMemory.h"
#include "Platform/PathText.h"

#include <string>

namespace {

// The length of the prefix that is never created: a drive with its separator ("C:\") or the root.
size_t LengthOfRoot(const std::string& path)
{
    return zm::IsLetter(path[0]) && path[1] == ':' ? 3 : 1;
}

bool CreateFoldersOf(std::string folder)
{
    for (size_t i = LengthOfRoot(folder); i < folder.size(); ++i) {
        // Only the first of two separators counts: a folder name must not end with one, or the system may not find it.
        if (!zm::IsSeparator(folder[i]) || zm::IsSeparator(folder[i - 1])) {
            continue;
        }
        folder[i] = 0;
        const char* prefix = folder.c_str();
        // Checked again after a failure: another process may have created the folder in the meantime.
        if (zm::FileMode(prefix) == 0 && !zm::MakeDirectory(prefix) && zm::FileMode(prefix) == 0) {
            return false;
        }
        folder[i] = '\\';
    }
    return true;
}

}  // namespace

int ZmFileExist(const char* path)
{
    return path != nullptr && zm::FileMode(path) != 0;
}

int ZmRenameFile(const char* oldPath, const char* newPath)
{
    return oldPath != nullptr && newPath != nullptr && zm::RenamePath(oldPath, newPath);
}

int ZmDeleteFile(const char* path)
{
    return path != nullptr && zm::DeleteFilePath(path);
}

int ZmMakeDirectory(const char* path)
{
    return path != nullptr && zm::MakeDirectory(path);
}

int ZmRemoveDirectory(const char* path)
{
    return path != nullptr && zm::RemoveDirectory(path);
}

int ZmDeleteDirectory(const char* path)
{
    return path != nullptr && zm::UnlessOutOfMemory(false, [path] { return zm::DeleteTree(path); });
}

int ZmCreateFileTree(const char* path)
{
    return path != nullptr && zm::UnlessOutOfMemory(false, [path] { return CreateFoldersOf(path); });
}

int ZmTestDiskSpace(const char* dir, unsigned long size)
{
    uint64_t available = 0;
    return dir != nullptr && zm::FreeSpace(dir, available) && available >= size;
}

XString ZmGetTempPath()
{
    return zm::UnlessOutOfMemory(XString(), [] { return XString(zm::TemporaryPath().c_str()); });
}
