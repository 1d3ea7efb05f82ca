#include "Platform/OsFiles.h"

#include "Platform/PathText.h"

#include <direct.h>
#include <errno.h>
#include <fcntl.h>
#include <io.h>
#include <stdint.h>
#include <string.h>
#include <sys/stat.h>
#include <windows.h>

// A macro of the system header.
#undef RemoveDirectory

namespace zm {

namespace {

static_assert(IsFolder(_S_IFDIR) && IsRegularFile(_S_IFREG));

constexpr DWORD kNoAttributes = INVALID_FILE_ATTRIBUTES;

std::string Joined(const std::string& directory, const char* name)
{
    return directory + '\\' + name;
}

// Keeps the separator of roots: "\\" and "C:\\".
std::string WithoutLastSeparators(std::string path)
{
    while (path.size() > 1 && IsSeparator(path.back()) && path[path.size() - 2] != ':') {
        path.pop_back();
    }
    return path;
}

bool RemoveTree(const std::string& path)
{
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes == kNoAttributes) {
        return false;
    }
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        SetFileAttributesA(path.c_str(), attributes & ~DWORD(FILE_ATTRIBUTE_READONLY));
    }
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        return DeleteFileA(path.c_str()) != 0;
    }
    bool done = true;
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {  // links are removed and never followed
        DirectorySearch search;
        for (search.Open(path.c_str()); search.Next();) {
            done = RemoveTree(Joined(path, search.Name().c_str())) && done;
        }
    }
    return done && RemoveDirectoryA(path.c_str()) != 0;
}

HANDLE HandleOf(int file)
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(file));
}

bool IsRegular(HANDLE file)
{
    return GetFileType(file) == FILE_TYPE_DISK;
}

int ErrorNumberOf(DWORD error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_NETPATH:
    case ERROR_INVALID_DRIVE: return ENOENT;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_WRITE_PROTECT: return EACCES;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS: return EEXIST;
    case ERROR_TOO_MANY_OPEN_FILES: return EMFILE;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY: return ENOMEM;
    default: return EINVAL;
    }
}

// Files that the run-time library opens cannot be replaced or deleted while they are open.
int OpenShared(const char* path, const char* mode)
{
    const bool updates = strchr(mode, '+') != nullptr, appends = *mode == 'a';
    const DWORD reads = updates || *mode == 'r' ? GENERIC_READ : 0,
                writes = updates || *mode != 'r' ? GENERIC_WRITE : 0;
    const DWORD creation = *mode == 'r' ? OPEN_EXISTING : appends ? OPEN_ALWAYS : CREATE_ALWAYS;
    const HANDLE file = CreateFileA(path, reads | writes, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        errno = ErrorNumberOf(GetLastError());
        return -1;
    }
    // Binary in all modes: in text mode the run-time library would end the file at a byte 0x1A.
    const int res =
        _open_osfhandle(reinterpret_cast<intptr_t>(file), (appends ? _O_APPEND : 0) | (writes == 0 ? _O_RDONLY : 0));
    if (res < 0) {
        CloseHandle(file);
    }
    return res;
}

}  // namespace

FILE* OpenFile(const char* path, const char* mode, FileKind kind)
{
    const int file = OpenShared(path, mode);
    const bool takes = file >= 0 && (kind == FileKind::ANY || IsRegular(HandleOf(file)));
    FILE* res = takes ? _fdopen(file, mode) : nullptr;
    if (res != nullptr) {
        TurnText(res, strpbrk(mode, "rb+") == nullptr);
    } else if (file >= 0) {
        _close(file);
    }
    return res;
}

void TurnText(FILE* file, bool toWriting)
{
    _setmode(_fileno(file), toWriting ? _O_TEXT : _O_BINARY);
}

const bool kTextReadsDropReturns = true;

int64_t TellFile(FILE* file)
{
    return _ftelli64(file);
}

bool SeekFile(FILE* file, int64_t offset, int whence)
{
    return _fseeki64(file, offset, whence) == 0;
}

int64_t RegularSize(FILE* file)
{
    struct _stat64 status;
    return _fstat64(_fileno(file), &status) == 0 && (status.st_mode & S_IFMT) == S_IFREG ? int64_t(status.st_size) : -1;
}

bool WriteDirectly(FILE* file, const char* text, size_t length)
{
    return _write(_fileno(file), text, unsigned(length)) == int(length);
}

// The system does not find a folder by a name with a separator at its end. Names of files cannot end with one.
unsigned FileMode(const char* path)
{
    const std::string name = WithoutLastSeparators(path);
    struct _stat64 status;
    const unsigned mode = _stat64(name.c_str(), &status) == 0 ? status.st_mode : 0;
    return name == path || IsFolder(mode) ? mode : 0;
}

bool IsMissing(const char* path)
{
    return GetFileAttributesA(path) == kNoAttributes && ErrorNumberOf(GetLastError()) == ENOENT;
}

bool RenamePath(const char* from, const char* to)
{
    return rename(from, to) == 0;
}

bool DeleteFilePath(const char* path)
{
    return DeleteFileA(path) != 0;
}

bool MakeDirectory(const char* path)
{
    return _mkdir(path) == 0;
}

bool RemoveDirectory(const char* path)
{
    return RemoveDirectoryA(path) != 0;
}

bool DeleteTree(const char* path)
{
    const std::string native = WithoutLastSeparators(path);
    return !native.empty() && RemoveTree(native);
}

bool FreeSpace(const char* path, uint64_t& bytes)
{
    ULARGE_INTEGER available;
    if (GetDiskFreeSpaceExA(path, &available, nullptr, nullptr) == 0) {
        return false;
    }
    bytes = available.QuadPart;
    return true;
}

std::string TemporaryPath()
{
    char path[512];
    const DWORD length = GetTempPathA(sizeof(path), path);
    return length < sizeof(path) ? std::string(path, length) : std::string();
}

namespace {

struct Search {
    HANDLE handle;
    WIN32_FIND_DATAA entry;
    bool first;
};

}  // namespace

const bool kFileNamesIgnoreCase = true;

void DirectorySearch::Open(const char* directory)
{
    Close();
    Search* search = new Search;
    search->first = true;
    search->handle = FindFirstFileA(Joined(directory, "*").c_str(), &search->entry);
    m_Search = search;
}

bool DirectorySearch::Next()
{
    Search* search = static_cast<Search*>(m_Search);
    do {
        const bool found = search != nullptr && search->handle != INVALID_HANDLE_VALUE &&
                           (search->first || FindNextFileA(search->handle, &search->entry) != 0);
        if (!found) {
            return false;
        }
        search->first = false;
        m_Name = search->entry.cFileName;
    } while (m_Name == "." || m_Name == "..");
    m_IsDirectory = (search->entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    m_IsLink = (search->entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    return true;
}

void DirectorySearch::Close()
{
    if (Search* search = static_cast<Search*>(m_Search)) {
        if (search->handle != INVALID_HANDLE_VALUE) {
            FindClose(search->handle);
        }
        delete search;
        m_Search = nullptr;
    }
}

MappedFile::Result MapFile(const char* path, MappedFile& res)
{
    const HANDLE file = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE || !IsRegular(file)) {
        if (file != INVALID_HANDLE_VALUE) {
            CloseHandle(file);
        }
        return MappedFile::NOT_OPENED;
    }
    LARGE_INTEGER size;
    MappedFile::Result result = MappedFile::NOT_MAPPABLE;
    // An empty file cannot be mapped; CreateFileMapping refuses it.
    if (GetFileSizeEx(file, &size) != 0) {
        const HANDLE mapping = CreateFileMappingA(file, nullptr, PAGE_READONLY, 0, 0, nullptr);
        if (mapping != nullptr) {
            void* base = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
            if (base != nullptr) {
                res.file = file;
                res.mapping = mapping;
                res.base = base;
                res.size = uint64_t(size.QuadPart);
                return MappedFile::MAPPED;
            }
            result = MappedFile::NOT_VIEWED;
            CloseHandle(mapping);
        }
    }
    CloseHandle(file);
    return result;
}

void UnmapFile(MappedFile& file)
{
    if (file.base != nullptr) {
        UnmapViewOfFile(file.base);
        CloseHandle(file.mapping);
        CloseHandle(file.file);
    }
    file = MappedFile();
}

}  // namespace zm
