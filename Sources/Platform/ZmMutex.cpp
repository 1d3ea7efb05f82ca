#include "ZmMutex.h"

#include "Platform/OsMutex.h"

ZmMutex::ZmMutex() : m_Lock(zm::NewLock()) {}

ZmMutex::~ZmMutex()
{
    zm::DeleteLock(m_Lock);
    m_Lock = nullptr;
}

int ZmMutex::EnterMutex()
{
    if (m_Lock == nullptr) {
        return 0;
    }
    zm::EnterLock(m_Lock);
    return 1;
}

int ZmMutex::TryEnterMutex()
{
    return m_Lock != nullptr && zm::TryEnterLock(m_Lock);
}

int ZmMutex::LeaveMutex()
{
    if (m_Lock == nullptr) {
        return 0;
    }
    zm::LeaveLock(m_Lock);
    return 1;
}
