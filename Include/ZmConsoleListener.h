#pragma once

#include "ZmLogListener.h"

/// Writes lines to a console window of its own, created by the first line; on POSIX systems, to the standard output.
/// The title is the listener's name, followed by the date if DATED is set.
class ZM_API ZmConsoleListener : public ZmLogListener {
public:
    /// Result of GetGuid().
    static const XGUID m_Guid;

    /// Creates a listener: for ZmLog::RegisterListenerFactory().
    static ZmLogListener* ListenerFactory(const char* name);

    ~ZmConsoleListener() override;
    const XGUID& GetGuid() const override;
    void Output(int module, int level, int line, const char* file, const char* text) override;

    /// Creates the console if there is none, and sets the size of its buffer in characters. Returns whether that
    /// succeeded; always 0 on POSIX systems.
    int SetSize(int width, int height);

private:
    explicit ZmConsoleListener(const char* name);

    void MakeConsole();

    void* m_Console = nullptr;
};
