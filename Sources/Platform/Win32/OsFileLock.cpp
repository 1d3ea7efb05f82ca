#include "Platform/OsFileLock.h"

#include <windows.h>

namespace zm {

FileLock::FileLock(const char* path) : m_File(nullptr)
{
    const HANDLE file = CreateFileA(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    OVERLAPPED place = {};
    if (file != INVALID_HANDLE_VALUE && LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place) != 0) {
        m_File = file;
    } else if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
    }
}

FileLock::~FileLock()
{
    if (m_File != nullptr) {
        CloseHandle(m_File);
    }
}

}  // namespace zm
