#include "Platform/OsReplacement.h"

#include "Platform/OutOfMemory.h"

#include <algorithm>
#include <iterator>
#include <string.h>
#include <vector>
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

// Not all file systems have such lists, and a new file has no target.
void TakeAccessList(const char* path, const char* target)
{
    DWORD size = 0;
    GetFileSecurityA(target, DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<char> access(size);
    if (GetFileSecurityA(target, DACL_SECURITY_INFORMATION, access.data(), size, &size) != 0) {
        SetFileSecurityA(path, DACL_SECURITY_INFORMATION, access.data());
    }
}

void TakeAttributes(HANDLE file, const char* path, const char* target)
{
    WIN32_FILE_ATTRIBUTE_DATA old;
    if (GetFileAttributesExA(target, GetFileExInfoStandard, &old) != 0) {
        SetFileTime(file, &old.ftCreationTime, nullptr, nullptr);
        SetFileAttributesA(path, old.dwFileAttributes | FILE_ATTRIBUTE_ARCHIVE);
    }
}

std::wstring Wide(const char* path)
{
    std::wstring res(size_t(MultiByteToWideChar(CP_ACP, 0, path, -1, nullptr, 0)), L'\0');
    res.resize(size_t(std::max(1, MultiByteToWideChar(CP_ACP, 0, path, -1, &res[0], int(res.size())))) - 1);
    return res;
}

// Replaces also files that are open and shared for deletion. Not all systems and file systems can do it.
bool RenameOverOpen(const char* path, const char* target)
{
    // The headers for older systems lack these, and the field of the flags.
    constexpr auto kRenameInfoEx = FILE_INFO_BY_HANDLE_CLASS(22);
    constexpr DWORD kReplaceIfExists = 1, kPosixSemantics = 2, kFlags = kReplaceIfExists | kPosixSemantics;
    const std::wstring name = Wide(target);
    const size_t bytes = name.size() * sizeof(wchar_t);
    std::vector<char> block(sizeof(FILE_RENAME_INFO) + bytes);
    auto* const renaming = reinterpret_cast<FILE_RENAME_INFO*>(block.data());
    memcpy(renaming, &kFlags, sizeof(kFlags));
    renaming->FileNameLength = DWORD(bytes);
    memcpy(renaming->FileName, name.data(), bytes);
    const HANDLE file = CreateFileA(path, DELETE | SYNCHRONIZE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    const bool res = file != INVALID_HANDLE_VALUE &&
                     SetFileInformationByHandle(file, kRenameInfoEx, renaming, DWORD(block.size())) != 0;
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
    }
    return res;
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

// The handle allows others to write the file, but not to delete it.
void* MakeNewFile(const char* path, const char* target, Replacement::Options, bool& taken)
{
    const HANDLE file = CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    taken = file == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS;
    if (file == INVALID_HANDLE_VALUE) {
        return nullptr;
    }
    if (!UnlessOutOfMemory(false, [&] {
            TakeAccessList(path, target);
            return true;
        })) {
        DiscardNewFile(file, path);
        return nullptr;
    }
    return file;
}

void DiscardNewFile(void* held, const char* path)
{
    CloseHandle(held);
    DeleteFileA(path);
}

// Windows 10 can, on its own file system only.
const bool kReplacesOpenFiles = false;

// ReplaceFile() keeps more of the target, such as its streams, but takes several steps, and a process killed between
// them leaves no file of that name. It is for files that the others cannot replace because they are open. A held file
// cannot be renamed. Attributes come last, as a hidden file cannot be opened to be written anew.
bool GiveName(void*& held, const char* path, const char* target)
{
    if (FlushFileBuffers(held) == 0) {
        return false;
    }
    TakeAttributes(held, path, target);
    CloseHandle(held);
    if (UnlessOutOfMemory(false, [&] { return RenameOverOpen(path, target); }) ||
        MoveFileExA(path, target, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0 ||
        ReplaceFileA(target, path, nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != 0) {
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
