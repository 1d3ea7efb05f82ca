#include "Platform/OsReplacement.h"

#include <algorithm>
#include <iterator>
#include <windows.h>

namespace zm {

namespace {

constexpr uint64_t kTicksOfAMinute = 60ull * 10000000;

bool IsOlderThanAMinute(HANDLE file)
{
    FILETIME written, now;
    GetSystemTimeAsFileTime(&now);
    const auto ticks = [](const FILETIME& time) { return uint64_t(time.dwHighDateTime) << 32 | time.dwLowDateTime; };
    return GetFileTime(file, nullptr, nullptr, &written) != 0 && ticks(now) > ticks(written) + kTicksOfAMinute;
}

}  // namespace

// The full path, since the name in "C:name" does not follow a separator. TakesReplacement() refuses links.
std::string ReplacedPath(const char* path)
{
    std::string res(GetFullPathNameA(path, 0, nullptr, nullptr), '\0');
    res.resize(GetFullPathNameA(path, DWORD(res.size()), &res[0], nullptr));
    return res;
}

bool TakesReplacement(const char* target, Replacement::Options options)
{
    const HANDLE file = CreateFileA(target, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return GetLastError() == ERROR_FILE_NOT_FOUND;
    }
    BY_HANDLE_FILE_INFORMATION status;
    const bool res = GetFileType(file) == FILE_TYPE_DISK && GetFileInformationByHandle(file, &status) != 0 &&
                     (status.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) == 0 &&
                     (status.nNumberOfLinks == 1 || (options & Replacement::CLOSEST) != 0);
    CloseHandle(file);
    SetLastError(ERROR_ACCESS_DENIED);  // where it is refused
    return res;
}

// GiveName() transfers the target's attributes. The handle allows others to write the file, but not to delete it.
void* MakeNewFile(const char* path, const char*, Replacement::Options, bool& taken)
{
    const HANDLE file = CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    taken = file == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS;
    return file != INVALID_HANDLE_VALUE ? file : nullptr;
}

void DiscardNewFile(void* held, const char* path)
{
    CloseHandle(held);
    DeleteFileA(path);
}

// ReplaceFile() keeps an existing target's attributes and access list. A held file cannot be renamed.
bool GiveName(void*& held, const char* path, const char* target)
{
    if (FlushFileBuffers(held) == 0) {
        return false;
    }
    CloseHandle(held);
    if (ReplaceFileA(target, path, nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != 0 ||
        MoveFileExA(path, target, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0) {
        held = nullptr;
        return true;
    }
    held = CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    return false;
}

bool SystemFailed()
{
    constexpr DWORD kFailures[] = {ERROR_TOO_MANY_OPEN_FILES, ERROR_NOT_ENOUGH_MEMORY,  ERROR_OUTOFMEMORY,
                                   ERROR_SHARING_VIOLATION,   ERROR_DISK_FULL,          ERROR_HANDLE_DISK_FULL,
                                   ERROR_IO_DEVICE,           ERROR_NO_SYSTEM_RESOURCES};
    return std::find(std::begin(kFailures), std::end(kFailures), GetLastError()) != std::end(kFailures);
}

// A file released a moment ago may be about to be renamed.
void RemoveUnheldFile(const char* path)
{
    const HANDLE file = CreateFileA(path, GENERIC_READ | DELETE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    const bool removes = file != INVALID_HANDLE_VALUE && IsOlderThanAMinute(file);
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
    }
    if (removes) {
        DeleteFileA(path);
    }
}

}  // namespace zm
