// Large files in 32-bit programs, too.
#define _FILE_OFFSET_BITS 64

#include "Platform/OsReplacement.h"

#include <algorithm>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace zm {

namespace {

std::string WithoutLinks(const char* path)
{
    std::string native = path;
    std::replace(native.begin(), native.end(), '\\', '/');
    struct stat status;
    if (lstat(native.c_str(), &status) == 0 && S_ISLNK(status.st_mode)) {
        char resolved[PATH_MAX];
        native = realpath(native.c_str(), resolved) != nullptr ? resolved : "";
    }
    return native;
}

// A name that nobody has; -1 if that folder takes no files.
int MakeBeside(const std::string& target, mode_t mode, std::string& res)
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    unsigned number = unsigned(now.tv_nsec) ^ unsigned(getpid()) << 10;
    int file = -1;
    do {
        char ending[16];
        snprintf(ending, sizeof(ending), ".%08x", number++);
        res = target + ending;
        file = open(res.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    } while (file < 0 && errno == EEXIST);
    return file;
}

bool TakesPlaceUnnoticed(const std::string& target, const struct stat& status)
{
    return S_ISREG(status.st_mode) && status.st_nlink == 1 &&
           faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) == 0;
}

bool MakeLike(int file, const struct stat& status)
{
    struct stat made;
    const bool sameOwner = fstat(file, &made) == 0 && made.st_uid == status.st_uid && made.st_gid == status.st_gid;
    return (sameOwner || fchown(file, status.st_uid, status.st_gid) == 0) && fchmod(file, status.st_mode & 07777) == 0;
}

// To the disk, where the file system knows how.
bool Synchronise(const std::string& path, int access)
{
    const int file = open(path.c_str(), access | O_CLOEXEC);
    const bool done = file >= 0 && (fsync(file) == 0 || errno == EINVAL);
    if (file >= 0) {
        close(file);
    }
    return done;
}

}  // namespace

bool BeginReplacement(const char* path, Replacement& res)
{
    res.target = WithoutLinks(path);
    struct stat status;
    const bool exists = stat(res.target.c_str(), &status) == 0;
    if (res.target.empty() || (exists ? !TakesPlaceUnnoticed(res.target, status) : errno != ENOENT)) {
        return false;
    }
    const int file = MakeBeside(res.target, exists ? 0600 : 0666, res.temporary);
    if (file < 0) {
        return false;
    }
    const bool done = !exists || MakeLike(file, status);
    close(file);
    if (!done) {
        unlink(res.temporary.c_str());
    }
    return done;
}

bool EndReplacement(const Replacement& replacement, bool done)
{
    if (done && Synchronise(replacement.temporary, O_WRONLY) &&
        rename(replacement.temporary.c_str(), replacement.target.c_str()) == 0) {
        // The new name is in the folder; where that cannot be read, the system writes it in its own time.
        const size_t slash = replacement.target.rfind('/');
        Synchronise(slash == std::string::npos ? "." : replacement.target.substr(0, slash + 1), O_RDONLY);
        return true;
    }
    unlink(replacement.temporary.c_str());
    return false;
}

}  // namespace zm
