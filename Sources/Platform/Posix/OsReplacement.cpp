// Large files, in 32-bit programs too.
#define _FILE_OFFSET_BITS 64

#include "Platform/OsReplacement.h"

#include "Platform/Posix/FileHandle.h"

#include <algorithm>
#include <errno.h>
#include <fcntl.h>
#include <iterator>
#include <limits.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zm {

namespace {

bool MakeLike(int file, const struct stat& status, Replacement::Options options)
{
    constexpr mode_t kAll = 07777, kWithoutSetId = 0777;  // set-id bits must not move to another owner
    struct stat made;
    const bool sameOwner = (fstat(file, &made) == 0 && made.st_uid == status.st_uid && made.st_gid == status.st_gid) ||
                           fchown(file, status.st_uid, status.st_gid) == 0;
    if (!sameOwner) {
        if ((options & Replacement::CLOSEST) == 0) {
            return false;
        }
        [[maybe_unused]] const int group = fchown(file, uid_t(-1), status.st_gid);
    }
    // After fchown(), which clears some of the permissions.
    return fchmod(file, status.st_mode & (sameOwner ? kAll : kWithoutSetId)) == 0;
}

bool IsUnlinked(int file)
{
    struct stat status;
    return fstat(file, &status) == 0 && status.st_nlink == 0;
}

bool IsNamed(int file, const char* path)
{
    struct stat opened, named;
    return fstat(file, &opened) == 0 && S_ISREG(opened.st_mode) && lstat(path, &named) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

// EINVAL: the file system cannot synchronise.
bool Synchronise(int file)
{
    return Repeated([&] { return fsync(file); }) == 0 || errno == EINVAL;
}

// A folder that cannot be read is left to the system, which writes it in its own time.
void SynchroniseFolderOf(const char* path)
{
    char folder[PATH_MAX] = ".";
    if (const char* slash = strrchr(path, '/')) {
        snprintf(folder, sizeof(folder), "%.*s", int(slash + 1 - path), path);
    }
    const int file = Repeated([&] { return open(folder, O_RDONLY | O_CLOEXEC); });
    if (file >= 0) {
        Synchronise(file);
        close(file);
    }
}

}  // namespace

std::string ReplacedPath(const char* path)
{
    constexpr int kMostLinks = 40;  // the system's own limit
    std::string native = path;
    std::replace(native.begin(), native.end(), '\\', '/');
    for (int links = 0; links < kMostLinks; ++links) {
        char text[PATH_MAX];
        const ssize_t length = readlink(native.c_str(), text, sizeof(text));
        if (length < 0) {
            // Any other error leaves open whether it is a link.
            const bool isNoLink = errno == EINVAL || errno == ENOENT || errno == ENOTDIR;
            return isNoLink ? native : "";
        }
        native.resize(*text == '/' ? 0 : native.rfind('/') + 1);
        native.append(text, size_t(length));
    }
    errno = ELOOP;
    return "";
}

// Sets errno wherever it returns false: SystemFailed() looks at it.
bool TakesReplacement(const char* target, Replacement::Options options)
{
    struct stat status;
    if (stat(target, &status) != 0) {
        return errno == ENOENT;
    }
    if (!S_ISREG(status.st_mode) || (status.st_nlink != 1 && (options & Replacement::CLOSEST) == 0)) {
        errno = EPERM;
        return false;
    }
    return faccessat(AT_FDCWD, target, W_OK, AT_EACCESS) == 0;
}

void* MakeNewFile(const char* path, const char* target, Replacement::Options options, bool& taken)
{
    struct stat status;
    const bool exists = stat(target, &status) == 0;
    taken = false;
    if (!exists && errno != ENOENT) {
        return nullptr;
    }
    const mode_t mode = exists || (options & Replacement::PRIVATE) != 0 ? 0600 : 0666;
    const int file = Repeated([&] { return open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode); });
    taken = file < 0 && errno == EEXIST;
    if (file < 0) {
        return nullptr;
    }
    // Fails only where locks do not work; there RemoveUnheldFile() removes nothing.
    LockFile(file);
    taken = IsUnlinked(file);  // by RemoveUnheldFile() of another process, before the lock
    if (taken || (exists && !MakeLike(file, status, options))) {
        DiscardNewFile(HandleOf(file), path);
        return nullptr;
    }
    return HandleOf(file);
}

void DiscardNewFile(void* held, const char* path)
{
    if (!IsUnlinked(FileOf(held))) {  // else the name may be another file's by now
        unlink(path);
    }
    close(FileOf(held));
}

const bool kReplacesOpenFiles = true;

bool GiveName(void*& held, const char* path, const char* target)
{
    if (!Synchronise(FileOf(held)) || rename(path, target) != 0) {
        return false;
    }
    close(FileOf(held));
    held = nullptr;
    SynchroniseFolderOf(target);
    return true;
}

bool SystemFailed()
{
    constexpr int kFailures[] = {EIO, ENOMEM, EMFILE, ENFILE, ENOSPC, EDQUOT, EINTR, ENOLCK};
    return std::find(std::begin(kFailures), std::end(kFailures), errno) != std::end(kFailures);
}

void RemoveUnheldFile(const char* path)
{
    const int file = Repeated([&] { return open(path, O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC); });
    // The holder may have renamed the file before it released the lock.
    if (file >= 0 && Repeated([&] { return flock(file, LOCK_EX | LOCK_NB); }) == 0 && IsNamed(file, path)) {
        unlink(path);
    }
    if (file >= 0) {
        close(file);
    }
}

}  // namespace zm
