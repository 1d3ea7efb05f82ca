#include "ZmConsoleListener.h"

#include "Logging/LogClock.h"
#include "Platform/OsClock.h"
#include "Platform/OsConsole.h"

const XGUID ZmConsoleListener::m_Guid = {0x2BA41B30, 0x77A51B5D};

ZmConsoleListener::ZmConsoleListener(const char* name) : ZmLogListener(name) {}

ZmConsoleListener::~ZmConsoleListener()
{
    if (m_Console != nullptr) {
        zm::CloseConsole(m_Console);
    }
}

ZmLogListener* ZmConsoleListener::ListenerFactory(const char* name)
{
    return new (std::nothrow) ZmConsoleListener(name);
}

const XGUID& ZmConsoleListener::GetGuid() const
{
    return m_Guid;
}

void ZmConsoleListener::MakeConsole()
{
    if (m_Console != nullptr) {
        return;
    }
    XString title(GetName());
    tm parts;
    char date[16];
    if ((GetFlags() & DATED) != 0 && zm::LocalTime(zm::g_LogClock.seconds(), parts) &&
        strftime(date, sizeof(date), "[%y %m %d]", &parts) != 0) {
        title << " " << date;
    }
    m_Console = zm::OpenConsole(title.Text());
}

int ZmConsoleListener::SetSize(int width, int height)
{
    MakeConsole();
    return m_Console != nullptr && zm::SizeConsole(m_Console, width, height);
}

void ZmConsoleListener::Output(int module, int level, int line, const char* file, const char* text)
{
    MakeConsole();
    if (m_Console != nullptr) {
        const Line complete = BuildLine(module, level, line, file, text);
        zm::WriteConsoleText(m_Console, complete.text, complete.length);
    }
}
