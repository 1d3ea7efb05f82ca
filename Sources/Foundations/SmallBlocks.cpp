#include "Foundations/SmallBlocks.h"

#include <stdlib.h>

namespace zm {

void* SmallBlocks::CutFromPage(size_t bytes)
{
    if (size_t(m_RestEnd - m_Rest) < bytes && !AddPage()) {
        return nullptr;
    }
    char* block = m_Rest;
    m_Rest += bytes;
    m_BytesInUse += bytes;
    return block;
}

// The rest of the previous page becomes a block of a smaller size. A page begins with the link to the next.
bool SmallBlocks::AddPage()
{
    char* page = static_cast<char*>(malloc(kPageBytes));
    if (page == nullptr) {
        return false;
    }
    if (m_Rest != m_RestEnd) {
        const size_t rest = size_t(m_RestEnd - m_Rest);
        m_BytesInUse += rest;
        GiveBack(m_Rest, rest);
    }
    Block* link = reinterpret_cast<Block*>(page);
    link->next = m_Pages;
    m_Pages = link;
    m_PageCount += 1;
    m_Rest = page + kGrain;
    m_RestEnd = page + kPageBytes;
    return true;
}

void SmallBlocks::FreePages()
{
    if (m_BytesInUse == 0) {
        while (m_Pages != nullptr) {
            Block* page = m_Pages;
            m_Pages = page->next;
            free(page);
        }
        *this = SmallBlocks();
    }
}

}  // namespace zm
