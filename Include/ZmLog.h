#pragma once

#include "XHashTable.h"
#include "ZmLogListener.h"
#include "ZmMutex.h"

#include <stdarg.h>

/// The log of a process. Code registers a module once, and then says where a message comes from and what it is:
///
///     static const int module = ZmLog::GetLog().RegisterModule("Terrain");
///     ZmLog::GetLog().SetInformationMT(module, ZmLog::LEVEL_WARNING, __LINE__, __FILE__).PrintMT("%d holes", holes);
///
/// The log formats the message once and hands it to each listener that hears this module at this level, in the order
/// of their registration (the last listener takes the place of one that is removed). Without listeners nothing is
/// formatted. Messages are cut to 16383 characters.
///
/// Threads: one that logs beside others uses SetInformationMT() and PrintMT(), which hold a lock from the first to the
/// end of the second. The other two take none and share what SetInformation() stored; nor do the registrations, which
/// are made before threads log. The log lives until the library is unloaded; what is printed later is lost.
class ZmLog {
public:
    /// What a message is; the levels that a listener hears are a sum of these.
    enum Level : int {
        LEVEL_DEBUG = 1,
        LEVEL_TRACE = 2,
        LEVEL_ERROR = 4,
        LEVEL_WARNING = 8,
        LEVEL_INFO = 16
    };

    /// Makes a listener of that name; null if it cannot.
    typedef ZmLogListener* (*ListenerFactory)(const char* name);

    /// The one log of the process.
    ZM_API static ZmLog& GetLog();

    /// "DEBUG", "TRACE", "ERROR", "WARNING", "INFO"; empty for anything else.
    ZM_API static const char* GetLevelDesc(Level level);

    /// The id of the module, from 1 on, which it gets if it is new; -1 for null and for an empty name.
    ZM_API int RegisterModule(const char* name);

    /// **The id minus 1**, on purpose; -1 for null, for an empty and for an unknown name.
    ZM_API int IsModule(const char* name) const;

    /// The name of a module; null for an id that there is not. Valid until the next registration.
    ZM_API const char* GetModule(int id) const;

    /// 1; or 0 if that type has a factory already, which stays.
    ZM_API int RegisterListenerFactory(const XGUID& type, ListenerFactory factory);

    /// The listener of that type and name, made if there is none, which hears the module from now on. Null if the name
    /// belongs to a listener of another type, or if no factory makes it. The log owns it.
    ZM_API ZmLogListener* RegisterListener(const XGUID& type, const char* name, int module);

    /// Destroys the listener: 1, or 0 if there is none of that name. Not from its own Output(); from
    /// that of another one it may cost the last listener the message.
    ZM_API int UnregisterListener(const char* name);

    /// The listener of that name, or null.
    ZM_API ZmLogListener* GetListener(const char* name);
    ZM_API const ZmLogListener* GetListener(const char* name) const;

    /// Says where the next messages come from. A null file reads as empty.
    ZM_API ZmLog& SetInformation(int module, Level level, int line, const char* file);

    /// Formats a message as printf() does and hands it to the listeners, which may print in turn. Of a format that
    /// printf() refuses, such as "100%", the message is the format itself.
    ZM_API void Print(const char* format, ...) ZM_PRINTF(2, 3);

    /// The pair for threads. Each call of the first must be followed by one of the second, in the same thread.
    ZM_API ZmLog& SetInformationMT(int module, Level level, int line, const char* file);
    ZM_API void PrintMT(const char* format, ...) ZM_PRINTF(2, 3);

    /// Size of the buffer for messages: 256 at first, then as much as the longest needed, doubled up to 16384.
    int GetBufferSize() const { return m_BufferSize; }

    ZmLog(const ZmLog&) = delete;
    ZmLog& operator=(const ZmLog&) = delete;

private:
    ZmLog();
    ~ZmLog();

    int FindModule(const char* name) const;
    void VPrint(const char* format, va_list arguments);
    const char* Format(const char* format, va_list arguments);
    const char* FormatAny(const char* format, va_list arguments);
    const char* CopyText(const char* text);
    bool GrowBuffer(int needed);
    void Dispatch(const char* text);

    int m_BufferSize;
    char* m_Buffer;
    int m_Module;
    int m_Line;
    int m_Level;
    XString m_File;
    XHashTable<ZmLogListener*, XString> m_Listeners;
    XHashTable<ListenerFactory, XGUID> m_Factories;
    XArray<XString> m_Modules;
    ZmMutex m_Mutex;
};
