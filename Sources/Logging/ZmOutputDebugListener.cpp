#include "ZmOutputDebugListener.h"

#include "Platform/OsConsole.h"

const XGUID ZmOutputDebugListener::m_Guid = {0x51F155DD, 0x7AA77819};

ZmOutputDebugListener::ZmOutputDebugListener(const char* name) : ZmLogListener(name) {}

ZmOutputDebugListener::~ZmOutputDebugListener() = default;

ZmLogListener* ZmOutputDebugListener::ListenerFactory(const char* name)
{
    return new (std::nothrow) ZmOutputDebugListener(name);
}

const XGUID& ZmOutputDebugListener::GetGuid() const
{
    return m_Guid;
}

void ZmOutputDebugListener::Output(int module, int level, int line, const char* file, const char* text)
{
    zm::WriteDebugText(BuildLine(module, level, line, file, text).text);
}
