// Large files, in 32-bit programs too.
#define _FILE_OFFSET_BITS 64

#include "Platform/OsFileLock.h"

#include "Platform/Posix/FileHandle.h"

#include <fcntl.h>
#include <unistd.h>

namespace zm {

FileLock::FileLock(const char* path) : m_File(nullptr)
{
    const int file = Repeated([&] { return open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0600); });
    if (file >= 0 && LockFile(file)) {
        m_File = HandleOf(file);
    } else if (file >= 0) {
        close(file);
    }
}

FileLock::~FileLock()
{
    if (m_File != nullptr) {
        close(FileOf(m_File));
    }
}

}  // namespace zm
