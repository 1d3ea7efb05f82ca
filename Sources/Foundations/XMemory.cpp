#include "XMemory.h"

#include <stdint.h>

namespace zm {

void* NewBlock(unsigned long long bytes)
{
    return bytes <= PTRDIFF_MAX ? ::operator new(size_t(bytes), std::nothrow) : nullptr;
}

void DeleteBlock(void* block)
{
    ::operator delete(block);
}

}  // namespace zm
