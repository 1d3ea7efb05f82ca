#include "XMemory.h"

namespace zm {

void* NewBlock(size_t bytes)
{
    return ::operator new(bytes, std::nothrow);
}

void DeleteBlock(void* block)
{
    ::operator delete(block);
}

}  // namespace zm
