#pragma once

#include "ZmLogListener.h"

/// Writes lines to the debugger; on POSIX systems, to the system log.
class ZM_API ZmOutputDebugListener : public ZmLogListener {
public:
    /// Result of GetGuid().
    static const XGUID m_Guid;

    /// Creates a listener: for ZmLog::RegisterListenerFactory().
    static ZmLogListener* ListenerFactory(const char* name);

    ~ZmOutputDebugListener() override;
    const XGUID& GetGuid() const override;
    void Output(int module, int level, int line, const char* file, const char* text) override;

private:
    explicit ZmOutputDebugListener(const char* name);
};
