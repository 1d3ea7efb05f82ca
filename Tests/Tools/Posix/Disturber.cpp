// Disturber <seconds> swap <folder> <link>    swaps the two again and again
// Disturber <seconds> guard <file>            makes and removes the file; fails if anyone else changes it meanwhile
//
// The process in whose way the tool must not write.

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>

namespace {

constexpr int kSkipped = 77;

/// Whether the system swaps at all.
bool Swap(const char* a, const char* b)
{
    return renameat2(AT_FDCWD, a, AT_FDCWD, b, RENAME_EXCHANGE) == 0;
}

bool MakeAndRemove(const char* path)
{
    const int file = open(path, O_RDWR | O_CREAT | O_EXCL, 0600);
    if (file < 0) {
        return errno == EEXIST && unlink(path) == 0;  // the tool was first
    }
    char bytes[8] = {};
    bool res = write(file, "mine", 4) == 4;
    usleep(100);
    struct stat status;
    res = res && fstat(file, &status) == 0 && status.st_nlink == 1 && pread(file, bytes, sizeof(bytes), 0) == 4 &&
          memcmp(bytes, "mine", 4) == 0;
    unlink(path);
    close(file);
    return res;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 4) {
        return 2;
    }
    const bool swaps = strcmp(argv[2], "swap") == 0;
    if (swaps && !Swap(argv[3], argv[4])) {
        perror("no swapping");
        return kSkipped;
    }
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(atoi(argv[1]));
    while (std::chrono::steady_clock::now() < end) {
        if (!(swaps ? Swap(argv[3], argv[4]) : MakeAndRemove(argv[3]))) {
            return 1;
        }
    }
    return 0;
}
