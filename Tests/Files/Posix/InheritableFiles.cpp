#include <fcntl.h>

int InheritableFiles();

int InheritableFiles()
{
    int count = 0;
    for (int file = 0; file < 1024; ++file) {
        const int flags = fcntl(file, F_GETFD);
        count += flags >= 0 && (flags & FD_CLOEXEC) == 0;
    }
    return count;
}
