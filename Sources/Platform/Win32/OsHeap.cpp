#include "Platform/OsHeap.h"

#include <malloc.h>

// Of libstdc++, which exports it for leak checkers and declares it nowhere.
namespace __gnu_cxx {
void __freeres();
}

namespace zm {

size_t HeapBlockSize(void* block)
{
    return block != nullptr ? _msize(block) : 0;
}

// The reserve for exceptions without memory, some 70 KB.
void FreeRuntimeMemory()
{
    __gnu_cxx::__freeres();
}

}  // namespace zm
