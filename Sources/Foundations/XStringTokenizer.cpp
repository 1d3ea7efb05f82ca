#include "XStringTokenizer.h"

namespace {

bool IsOneOf(char c, const char* set)
{
    return c != 0 && set != nullptr && strchr(set, c) != nullptr;
}

}  // namespace

const char* XStringTokenizer::NextToken(const char* previous)
{
    const char *text = m_String->Text(), *end = text + m_String->Length();
    const char* at = text;
    if (previous != nullptr) {
        if (uintptr_t(previous) - uintptr_t(text) > m_String->Length()) {
            return nullptr;
        }
        at = previous + strlen(previous);
        if (at == end) {
            return nullptr;
        }
        ++at;
    }
    if (*at == 0) {
        return nullptr;
    }
    while (at < end && IsOneOf(*at, m_Delimiters)) {
        ++at;
    }
    if (at >= end) {
        return nullptr;
    }
    const char* token = at++;
    while (at < end && !IsOneOf(*at, m_Delimiters)) {
        ++at;
    }
    if (at < end) {
        m_String->m_Buffer[at - text] = 0;
    }
    return token;
}
