#include "Platform/OsFiles.h"

#include <algorithm>
#include <string>

namespace zm {

FILE* OpenFile(const char* path, const char* mode)
{
    std::string native = path;
    std::replace(native.begin(), native.end(), '\\', '/');
    return fopen(native.c_str(), mode);
}

}  // namespace zm
