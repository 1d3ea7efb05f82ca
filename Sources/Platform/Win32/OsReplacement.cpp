#include "Platform/OsReplacement.h"

#include <stdio.h>
#include <windows.h>

namespace zm {

namespace {

// Also where there is nothing of that name, unless the name is a device's.
bool TakesPlaceUnnoticed(const char* path)
{
    const HANDLE file = CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return GetLastError() == ERROR_FILE_NOT_FOUND;
    }
    BY_HANDLE_FILE_INFORMATION status;
    const bool res = GetFileType(file) == FILE_TYPE_DISK && GetFileInformationByHandle(file, &status) != 0 &&
                     (status.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) == 0 &&
                     status.nNumberOfLinks == 1;
    CloseHandle(file);
    return res;
}

bool MakeBeside(const std::string& target, std::string& res)
{
    DWORD number = GetTickCount() ^ GetCurrentProcessId() << 10;
    HANDLE file = INVALID_HANDLE_VALUE;
    do {
        char ending[16];
        snprintf(ending, sizeof(ending), ".%08lx", number++);
        res = target + ending;
        file = CreateFileA(res.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    } while (file == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    CloseHandle(file);
    return true;
}

bool Synchronise(const char* path)
{
    const HANDLE file = CreateFileA(path, GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    const bool done = file != INVALID_HANDLE_VALUE && FlushFileBuffers(file) != 0;
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
    }
    return done;
}

// One that exists keeps its attributes and its access list.
bool TakePlace(const Replacement& replacement)
{
    const char *from = replacement.temporary.c_str(), *to = replacement.target.c_str();
    return ReplaceFileA(to, from, nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != 0 ||
           MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

}  // namespace

bool BeginReplacement(const char* path, Replacement& res)
{
    res.target = path;
    return TakesPlaceUnnoticed(path) && MakeBeside(res.target, res.temporary);
}

bool EndReplacement(const Replacement& replacement, bool done)
{
    if (done && Synchronise(replacement.temporary.c_str()) && TakePlace(replacement)) {
        return true;
    }
    DeleteFileA(replacement.temporary.c_str());
    return false;
}

}  // namespace zm
