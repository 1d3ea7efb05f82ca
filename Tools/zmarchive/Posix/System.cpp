#include "System.h"

#include <errno.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

bool IsTerminal(FILE* stream)
{
    return isatty(fileno(stream)) != 0;
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
