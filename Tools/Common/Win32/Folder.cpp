#include "System.h"

#include <stddef.h>
#include <string.h>
#include <windows.h>

#include <filesystem>
#include <vector>

namespace {

std::wstring Wide(const std::string& name)
{
    return std::filesystem::path(name).native();
}

std::wstring PathOf(HANDLE file)
{
    std::wstring res(GetFinalPathNameByHandleW(file, nullptr, 0, 0), L'\0');
    res.resize(GetFinalPathNameByHandleW(file, &res[0], DWORD(res.size()), 0));
    if (!res.empty() && res.back() == L'\\') {
        res.pop_back();  // of the root of a drive
    }
    return res;
}

bool IsSame(const std::wstring& a, const std::wstring& b)
{
    return CompareStringOrdinal(a.c_str(), int(a.size()), b.c_str(), int(b.size()), TRUE) == CSTR_EQUAL;
}

/// Opened to be listed and without sharing its deletion: nobody can rename the folder or put a link in its place, nor
/// do so with the folders above it, which contain an open one.
HANDLE OpenFolder(const std::wstring& path, DWORD flags)
{
    return CreateFileW(path.c_str(), FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
}

bool HasAttributes(HANDLE file, DWORD mask, DWORD attributes)
{
    BY_HANDLE_FILE_INFORMATION status;
    return GetFileInformationByHandle(file, &status) != 0 && (status.dwFileAttributes & mask) == attributes;
}

void CloseIfOpen(HANDLE file)
{
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
    }
}

}  // namespace

struct Folder::State {
    HANDLE handle = INVALID_HANDLE_VALUE;
    std::wstring path;  ///< with the prefix that turns the parsing of names off

    ~State() { CloseIfOpen(handle); }

    /// Whether the file is in this folder: an empty folder can become a link even while it is open.
    bool Contains(HANDLE file) const
    {
        const std::wstring place = PathOf(file);
        return IsSame(place.substr(0, place.rfind(L'\\')), path);
    }

    void Keep(HANDLE file, bool isWanted)
    {
        path = PathOf(file);
        if (isWanted && !path.empty()) {
            handle = file;
        } else {
            CloseHandle(file);
            SetLastError(ERROR_DIRECTORY);
        }
    }

    std::wstring operator/(const std::string& name) const { return path + L'\\' + Wide(name); }
};

Folder::Folder(const std::string& path) : m_State(std::make_unique<State>())
{
    const HANDLE file = OpenFolder(Wide(path), 0);
    if (file != INVALID_HANDLE_VALUE) {
        m_State->Keep(file, HasAttributes(file, FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_DIRECTORY));
    }
}

Folder::Folder(const Folder& parent, const std::string& name) : m_State(std::make_unique<State>())
{
    constexpr DWORD kMask = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    const HANDLE file = OpenFolder(*parent.m_State / name, FILE_FLAG_OPEN_REPARSE_POINT);
    if (file != INVALID_HANDLE_VALUE) {
        m_State->Keep(file, HasAttributes(file, kMask, FILE_ATTRIBUTE_DIRECTORY) && parent.m_State->Contains(file));
    }
}

Folder::~Folder() = default;
Folder::Folder(Folder&&) noexcept = default;

bool Folder::IsOpen() const
{
    return m_State->handle != INVALID_HANDLE_VALUE;
}

bool Folder::MakeFolder(const std::string& name) const
{
    return CreateDirectoryW((*m_State / name).c_str(), nullptr) != 0;
}

Folder::Kind Folder::KindOf(const std::string& name) const
{
    const DWORD attributes = GetFileAttributesW((*m_State / name).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return MISSING;
    }
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 ? A_LINK
           : (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0   ? A_FOLDER
                                                            : A_FILE;
}

struct NewFile::State {
    const Folder::State* folder;
    std::wstring path;
    HANDLE file = INVALID_HANDLE_VALUE;
    bool isRenamed = false;
};

NewFile::NewFile(const Folder& folder) : m_State(std::make_unique<State>())
{
    m_State->folder = folder.m_State.get();
}

NewFile::~NewFile()
{
    if (m_State->file != INVALID_HANDLE_VALUE && !m_State->isRenamed) {
        FILE_DISPOSITION_INFO removed = {TRUE};
        SetFileInformationByHandle(m_State->file, FileDispositionInfo, &removed, sizeof(removed));
    }
    CloseIfOpen(m_State->file);
}

// Who may read a private file is decided by the folder; TakePermissionsOf() comes before the first byte.
NewFile::Result NewFile::Make(const std::string& name, bool)
{
    m_State->path = *m_State->folder / name;
    m_State->file = CreateFileW(m_State->path.c_str(), GENERIC_WRITE | DELETE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                                FILE_ATTRIBUTE_NORMAL, nullptr);
    if (m_State->file == INVALID_HANDLE_VALUE) {
        return GetLastError() == ERROR_FILE_EXISTS ? TAKEN : FAILED;
    }
    // From now on the folder is not empty and can no longer become a link.
    if (!m_State->folder->Contains(m_State->file)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return FAILED;
    }
    return DONE;
}

void NewFile::TakePermissionsOf(const std::string& name)
{
    const std::wstring old = *m_State->folder / name;
    DWORD size = 0;
    GetFileSecurityW(old.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<char> access(size);
    if (GetFileSecurityW(old.c_str(), DACL_SECURITY_INFORMATION, access.data(), size, &size) != 0) {
        SetFileSecurityW(m_State->path.c_str(), DACL_SECURITY_INFORMATION, access.data());
    }
    const DWORD attributes = GetFileAttributesW(old.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        // A file marked as read-only could not be removed, and the system does not replace one.
        SetFileAttributesW(m_State->path.c_str(),
                           (attributes & ~DWORD(FILE_ATTRIBUTE_READONLY)) | FILE_ATTRIBUTE_ARCHIVE);
    }
}

bool NewFile::Write(const char* bytes, size_t size)
{
    DWORD written;
    return WriteFile(m_State->file, bytes, DWORD(size), &written, nullptr) != 0 && written == size;
}

bool NewFile::Synchronise()
{
    return FlushFileBuffers(m_State->file) != 0;
}

NewFile::Result NewFile::Rename(const std::string& name, bool replaces)
{
    const std::wstring path = *m_State->folder / name;
    const size_t bytes = path.size() * sizeof(wchar_t);
    std::vector<char> block(sizeof(FILE_RENAME_INFO) + bytes);
    auto* const renaming = reinterpret_cast<FILE_RENAME_INFO*>(block.data());
    renaming->ReplaceIfExists = replaces;
    renaming->FileNameLength = DWORD(bytes);
    memcpy(renaming->FileName, path.data(), bytes);
    if (SetFileInformationByHandle(m_State->file, FileRenameInfo, renaming, DWORD(block.size())) == 0) {
        const DWORD error = GetLastError();
        return error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS ? TAKEN : FAILED;
    }
    m_State->isRenamed = true;
    return DONE;
}
