// Large files and file numbers, in 32-bit programs too.
#define _FILE_OFFSET_BITS 64

#include "System.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// O_PATH: a folder that may not be listed may still be written to.
constexpr int kOpenFolder = O_PATH | O_DIRECTORY | O_CLOEXEC;

// Some file systems have no such renaming, but links.
int RenameUnlessTaken(int folder, const char* from, const char* to)
{
    const int res = renameat2(folder, from, folder, to, RENAME_NOREPLACE);
    if (res == 0 || (errno != EINVAL && errno != ENOSYS)) {
        return res;
    }
    return linkat(folder, from, folder, to, 0) == 0 ? unlinkat(folder, from, 0) : -1;
}

}  // namespace

struct Folder::State {
    int descriptor = -1;

    ~State()
    {
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
};

Folder::Folder(const std::string& path) : m_State(std::make_unique<State>())
{
    m_State->descriptor = open(path.c_str(), kOpenFolder);
}

Folder::Folder(const Folder& parent, const std::string& name) : m_State(std::make_unique<State>())
{
    m_State->descriptor = openat(parent.m_State->descriptor, name.c_str(), kOpenFolder | O_NOFOLLOW);
}

Folder::~Folder() = default;
Folder::Folder(Folder&&) noexcept = default;

bool Folder::IsOpen() const
{
    return m_State->descriptor >= 0;
}

bool Folder::MakeFolder(const std::string& name) const
{
    return mkdirat(m_State->descriptor, name.c_str(), 0777) == 0;
}

Folder::Kind Folder::KindOf(const std::string& name) const
{
    struct stat status;
    if (fstatat(m_State->descriptor, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return MISSING;
    }
    return S_ISREG(status.st_mode)   ? A_FILE
           : S_ISDIR(status.st_mode) ? A_FOLDER
           : S_ISLNK(status.st_mode) ? A_LINK
                                     : OTHER;
}

struct NewFile::State {
    int folder;
    std::string name;
    int file = -1;
    bool isMade = false;
};

NewFile::NewFile(const Folder& folder) : m_State(std::make_unique<State>())
{
    m_State->folder = folder.m_State->descriptor;
}

NewFile::~NewFile()
{
    if (m_State->file >= 0) {
        close(m_State->file);
    }
    if (m_State->isMade) {
        unlinkat(m_State->folder, m_State->name.c_str(), 0);
    }
}

NewFile::Result NewFile::Make(const std::string& name, bool isPrivate)
{
    m_State->name = name;
    m_State->file = openat(m_State->folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                           isPrivate ? 0600 : 0666);
    m_State->isMade = m_State->file >= 0;
    return m_State->isMade ? DONE : errno == EEXIST ? TAKEN : FAILED;
}

void NewFile::TakePermissionsOf(const std::string& name)
{
    struct stat old, made;
    if (fstatat(m_State->folder, name.c_str(), &old, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(old.st_mode)) {
        return;
    }
    const int file = m_State->file;
    const bool isSameOwner = fstat(file, &made) == 0 && made.st_uid == old.st_uid && made.st_gid == old.st_gid;
    if (!isSameOwner && fchown(file, old.st_uid, old.st_gid) != 0) {
        [[maybe_unused]] const int group = fchown(file, uid_t(-1), old.st_gid);
    }
    // No set-id bits: new contents need not deserve the trust that the old ones had.
    [[maybe_unused]] const int mode = fchmod(file, old.st_mode & 0777);
}

bool NewFile::Write(const char* bytes, size_t size)
{
    while (size != 0) {
        const ssize_t written = write(m_State->file, bytes, size);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes += written;
        size -= size_t(written);
    }
    return true;
}

// EINVAL: the file system cannot synchronise.
bool NewFile::Synchronise()
{
    return fsync(m_State->file) == 0 || errno == EINVAL;
}

NewFile::Result NewFile::Rename(const std::string& name, bool replaces)
{
    const int file = m_State->file;
    m_State->file = -1;
    if (close(file) != 0) {  // some file systems report only here that there was no room
        return FAILED;
    }
    const int folder = m_State->folder;
    const char *const from = m_State->name.c_str(), *const to = name.c_str();
    const int failed = replaces ? renameat(folder, from, folder, to) : RenameUnlessTaken(folder, from, to);
    if (failed != 0) {
        return errno == EEXIST ? TAKEN : FAILED;
    }
    m_State->isMade = false;
    return DONE;
}
