#include "Platform/OsHeap.h"

#include <malloc.h>

// Exported by libstdc++ for leak checkers, but not declared in any header.
namespace __gnu_cxx {
void __freeres();
}

namespace zm {

size_t HeapBlockSize(void* block)
{
    return block != nullptr ? _msize(block) : 0;
}

// Frees the emergency pool for exceptions, about 70 KB.
void FreeRuntimeMemory()
{
    __gnu_cxx::__freeres();
}

}  // namespace zm
