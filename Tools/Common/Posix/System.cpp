#include "System.h"

#include "Text.h"

#include <errno.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

bool IsTerminal(FILE* stream)
{
    return isatty(fileno(stream)) != 0;
}

void UseBytes(FILE*) {}

bool MakePrivateFolder(const std::string& path)
{
    const bool made = mkdir(path.c_str(), S_IRWXU) == 0;
    if (!made && errno != EEXIST) {
        throw Failure("cannot make the folder " + Printable(path) + ": " + LastError());
    }
    return made;
}

bool IsLink(const std::string& path)
{
    struct stat status;
    return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

bool IsSpecialName(const std::string&)
{
    return false;
}

std::string LastError()
{
    return strerror(errno);
}
