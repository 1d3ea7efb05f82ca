#include "Platform/OsFiles.h"

namespace zm {

FILE* OpenFile(const char* path, const char* mode)
{
    return fopen(path, mode);
}

}  // namespace zm
