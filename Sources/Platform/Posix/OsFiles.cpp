// Large files, in 32-bit programs too.
#define _FILE_OFFSET_BITS 64

#include "Platform/OsFiles.h"

#include "Platform/PathText.h"
#include "Platform/Posix/FileHandle.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <memory>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <vector>

namespace zm {

namespace {

static_assert(IsFolder(S_IFDIR) && IsRegularFile(S_IFREG));

/// A path with the system's separators. Needs no memory from the heap. Over-long paths are cut, but not to a length
/// that the system would accept.
class Native {
public:
    explicit Native(const char* path)
    {
        char* end = m_Text;
        for (; *path != 0 && end != m_Text + PATH_MAX; ++path) {
            *end++ = *path == '\\' ? '/' : *path;
        }
        *end = 0;
    }

    const char* c_str() const { return m_Text; }

private:
    char m_Text[PATH_MAX + 1];
};

bool IsDotName(const char* name)
{
    return strcmp(name, ".") == 0 || strcmp(name, "..") == 0;
}

/// Removes a folder with its contents, relative to open folders and not by path, so that nobody can replace a folder by
/// a link meanwhile. Links are removed and never followed. One folder is open at a time, however deep the tree.
class TreeRemoval {
public:
    ~TreeRemoval() { Close(); }

    bool Run(const char* path)
    {
        bool done = Enter(AT_FDCWD, path);
        while (!m_Levels.empty()) {
            std::vector<std::string>& rest = m_Levels.back().rest;
            if (rest.empty()) {
                done = Leave() && done;
            } else {
                const std::string name = rest.back();
                rest.pop_back();
                done = Enter(m_Folder, name.c_str()) && done;
            }
        }
        return done;
    }

private:
    struct Level {
        std::string name;
        dev_t device;
        ino_t node;
        std::vector<std::string> rest;  ///< not removed yet: folders, and files that cannot be removed
    };

    bool Enter(int parent, const char* name);
    bool Leave();
    bool ReturnToLastLevel();
    bool RemoveFiles(std::vector<std::string>& rest) const;
    void Close()
    {
        if (m_Folder >= 0) {
            close(m_Folder);
            m_Folder = -1;
        }
    }

    int m_Folder = -1;  ///< the folder of the last level
    std::vector<Level> m_Levels;
};

bool TreeRemoval::Enter(int parent, const char* name)
{
    const int folder = Repeated([&] { return openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); });
    struct stat status;
    if (folder < 0 || fstat(folder, &status) != 0) {
        if (folder >= 0) {
            close(folder);
        }
        return false;
    }
    Close();
    m_Folder = folder;
    m_Levels.push_back({name, status.st_dev, status.st_ino, {}});
    return RemoveFiles(m_Levels.back().rest);
}

bool TreeRemoval::Leave()
{
    const std::string name = m_Levels.back().name;
    m_Levels.pop_back();
    if (m_Levels.empty()) {
        return unlinkat(AT_FDCWD, name.c_str(), AT_REMOVEDIR) == 0;
    }
    if (!ReturnToLastLevel()) {
        m_Levels.clear();  // the folder has been moved elsewhere
        return false;
    }
    return unlinkat(m_Folder, name.c_str(), AT_REMOVEDIR) == 0;
}

bool TreeRemoval::ReturnToLastLevel()
{
    const int parent = Repeated([&] { return openat(m_Folder, "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    Close();
    m_Folder = parent;
    struct stat status;
    return parent >= 0 && fstat(parent, &status) == 0 && status.st_dev == m_Levels.back().device &&
           status.st_ino == m_Levels.back().node;
}

bool TreeRemoval::RemoveFiles(std::vector<std::string>& rest) const
{
    const int folder = fcntl(m_Folder, F_DUPFD_CLOEXEC, 0);
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(folder >= 0 ? fdopendir(folder) : nullptr, closedir);
    if (entries == nullptr) {
        if (folder >= 0) {
            close(folder);
        }
        return false;
    }
    while (const dirent* entry = readdir(entries.get())) {
        if (!IsDotName(entry->d_name) && unlinkat(m_Folder, entry->d_name, 0) != 0) {
            rest.push_back(entry->d_name);
        }
    }
    return true;
}

int FlagsOf(const char* mode)
{
    const int access = strchr(mode, '+') != nullptr ? O_RDWR : *mode == 'r' ? O_RDONLY : O_WRONLY;
    return access | (*mode == 'w' ? O_CREAT | O_TRUNC : *mode == 'a' ? O_CREAT | O_APPEND : 0);
}

/// By kind. O_NONBLOCK keeps the opening of a pipe from waiting for its other end; regular files ignore it.
constexpr int kFlagsOf[] = {0, O_NONBLOCK | O_NOCTTY};

bool IsOfKind(int file, FileKind kind)
{
    struct stat status;
    return fstat(file, &status) == 0 &&
           (kind == FileKind::REGULAR ? IsRegularFile(status.st_mode) : !IsFolder(status.st_mode));
}

}  // namespace

FILE* OpenFile(const char* path, const char* mode, FileKind kind)
{
    const Native native(path);
    const int flags = FlagsOf(mode) | O_CLOEXEC | kFlagsOf[int(kind)];
    const int file = Repeated([&] { return open(native.c_str(), flags, 0666); });
    FILE* res = file >= 0 && IsOfKind(file, kind) ? fdopen(file, mode) : nullptr;
    if (res == nullptr && file >= 0) {
        close(file);
    }
    return res;
}

void TurnText(FILE*, bool) {}

const bool kTextReadsDropReturns = false;

int64_t TellFile(FILE* file)
{
    return ftello(file);
}

bool SeekFile(FILE* file, int64_t offset, int whence)
{
    return fseeko(file, offset, whence) == 0;
}

int64_t RegularSize(FILE* file)
{
    struct stat status;
    return fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode) ? int64_t(status.st_size) : -1;
}

bool WriteDirectly(FILE* file, const char* text, size_t length)
{
    const int descriptor = fileno(file);
    while (length > 0) {
        errno = 0;
        const ssize_t count = write(descriptor, text, length);
        if (count > 0) {
            text += count;
            length -= size_t(count);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

unsigned FileMode(const char* path)
{
    struct stat status;
    return stat(Native(path).c_str(), &status) == 0 ? status.st_mode : 0;
}

bool IsMissing(const char* path)
{
    struct stat status;
    return stat(Native(path).c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

bool RenamePath(const char* from, const char* to)
{
    return rename(Native(from).c_str(), Native(to).c_str()) == 0;
}

bool DeleteFilePath(const char* path)
{
    return unlink(Native(path).c_str()) == 0;
}

bool MakeDirectory(const char* path)
{
    return mkdir(Native(path).c_str(), 0777) == 0;
}

bool RemoveDirectory(const char* path)
{
    return rmdir(Native(path).c_str()) == 0;
}

bool DeleteTree(const char* path)
{
    std::string native = WithSeparator('/', path);
    while (native.size() > 1 && native.back() == '/') {
        native.pop_back();
    }
    return !native.empty() && (unlink(native.c_str()) == 0 || TreeRemoval().Run(native.c_str()));
}

bool FreeSpace(const char* path, uint64_t& bytes)
{
    struct statvfs status;
    if (statvfs(Native(path).c_str(), &status) != 0) {
        return false;
    }
    bytes = uint64_t(status.f_bavail) * status.f_frsize;
    return true;
}

std::string TemporaryPath()
{
    const char* path = getenv("TMPDIR");
    std::string res = path != nullptr && *path != 0 ? path : "/tmp";
    if (res.back() != '/') {
        res += '/';
    }
    return res;
}

const bool kFileNamesIgnoreCase = false;

void DirectorySearch::Open(const char* directory)
{
    Close();
    const Native native(*directory != 0 ? directory : "/");
    do {
        m_Search = opendir(native.c_str());
    } while (m_Search == nullptr && errno == EINTR);
}

bool DirectorySearch::Next()
{
    DIR* folder = static_cast<DIR*>(m_Search);
    const dirent* entry = nullptr;
    do {
        entry = folder != nullptr ? readdir(folder) : nullptr;
    } while (entry != nullptr && IsDotName(entry->d_name));
    if (entry == nullptr) {
        return false;
    }
    m_Name = entry->d_name;
    m_IsDirectory = entry->d_type == DT_DIR;
    m_IsLink = entry->d_type == DT_LNK;
    if (entry->d_type == DT_UNKNOWN || m_IsLink) {
        struct stat status;
        m_IsDirectory = fstatat(dirfd(folder), entry->d_name, &status, 0) == 0 && IsFolder(status.st_mode);
        m_IsLink = m_IsLink || (fstatat(dirfd(folder), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
                                S_ISLNK(status.st_mode));
    }
    return true;
}

void DirectorySearch::Close()
{
    if (m_Search != nullptr) {
        closedir(static_cast<DIR*>(m_Search));
        m_Search = nullptr;
    }
}

MappedFile::Result MapFile(const char* path, MappedFile& res)
{
    const Native native(path);
    const int flags = O_RDONLY | O_CLOEXEC | kFlagsOf[int(FileKind::REGULAR)];
    const int file = Repeated([&] { return open(native.c_str(), flags); });
    struct stat status;
    if (file < 0 || !IsOfKind(file, FileKind::REGULAR) || fstat(file, &status) != 0) {
        if (file >= 0) {
            close(file);
        }
        return MappedFile::NOT_OPENED;
    }
    // The mapping keeps the file open.
    MappedFile::Result result = MappedFile::NOT_MAPPABLE;
    if (status.st_size > 0 && uint64_t(status.st_size) <= SIZE_MAX) {
        void* base = mmap(nullptr, size_t(status.st_size), PROT_READ, MAP_PRIVATE, file, 0);
        result = base != MAP_FAILED ? MappedFile::MAPPED : MappedFile::NOT_VIEWED;
        if (result == MappedFile::MAPPED) {
            res.base = base;
            res.size = uint64_t(status.st_size);
        }
    }
    close(file);
    return result;
}

void UnmapFile(MappedFile& file)
{
    if (file.base != nullptr) {
        munmap(file.base, size_t(file.size));
    }
    file = MappedFile();
}

}  // namespace zm
