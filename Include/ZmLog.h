#pragma once

#include "XHashTable.h"
#include "ZmLogListener.h"
#include "ZmMutex.h"

#include <stdarg.h>

namespace zm {
class ModuleNames;
}

/// The log of the process. Code registers a module once, then states the origin and level of each message:
///
///     static const int module = ZmLog::GetLog().RegisterModule("Terrain");
///     ZmLog::GetLog().SetInformationMT(module, ZmLog::LEVEL_WARNING, __LINE__, __FILE__).PrintMT("%d holes", holes);
///
/// The log formats each message once and passes it to every listener that listens to this module at this level, in the
/// order of registration (when a listener is removed, the last one takes its place). Without listeners nothing is
/// formatted. Messages are cut to 16383 characters.
///
/// Threads: code that logs concurrently must use SetInformationMT() and PrintMT(), which hold a lock from the start of
/// the first call to the end of the second. SetInformation() and Print() take no lock and share the stored information.
/// The registration functions take no lock either: call them before threads log. The log lives until the library is
/// unloaded; anything printed later is lost. A process may exit while its threads print.
class ZmLog {
public:
    /// Level of a message. A listener's level mask is a sum of these.
    enum Level : int {
        LEVEL_DEBUG = 1,
        LEVEL_TRACE = 2,
        LEVEL_ERROR = 4,
        LEVEL_WARNING = 8,
        LEVEL_INFO = 16
    };

    /// Creates a listener with that name, or returns null if it cannot.
    typedef ZmLogListener* (*ListenerFactory)(const char* name);

    /// Returns the process-wide log.
    ZM_API static ZmLog& GetLog();

    /// Returns "DEBUG", "TRACE", "ERROR", "WARNING" or "INFO", or an empty text for any other value.
    ZM_API static const char* GetLevelDesc(Level level);

    /// Registers the module if it is new. Returns its id, from 1 on, or -1 for a null or empty name.
    ZM_API int RegisterModule(const char* name);

    /// Returns **the id minus 1**, on purpose, or -1 for a null, empty or unknown name.
    ZM_API int IsModule(const char* name) const;

    /// Returns the name of a module, or null for an unknown id. Valid until the next registration.
    ZM_API const char* GetModule(int id) const;

    /// Registers a factory. Returns 1, or 0 if that type already has one, which is kept.
    ZM_API int RegisterListenerFactory(const XGUID& type, ListenerFactory factory);

    /// Returns the listener of that type and name, created if necessary, and adds the module to it. Returns null if the
    /// name belongs to a listener of another type, or if no factory creates it. The log owns the listener.
    ZM_API ZmLogListener* RegisterListener(const XGUID& type, const char* name, int module);

    /// Destroys the listener. Returns 1, or 0 if there is none of that name. Must not be called from the listener's own
    /// Output(); if called from another listener's Output(), the last listener may miss the message.
    ZM_API int UnregisterListener(const char* name);

    /// Return the listener of that name, or null.
    ZM_API ZmLogListener* GetListener(const char* name);
    ZM_API const ZmLogListener* GetListener(const char* name) const;

    /// Sets the origin of the next messages. A null file is treated as empty.
    ZM_API ZmLog& SetInformation(int module, Level level, int line, const char* file);

    /// Formats a message as printf() does and passes it to the listeners, which may print in turn. If printf() rejects
    /// the format, as with "100%", the message is the format itself.
    ZM_API void Print(const char* format, ...) ZM_PRINTF(2, 3);

    /// The pair for threads. Each call of the first must be followed by a call of the second in the same thread.
    ZM_API ZmLog& SetInformationMT(int module, Level level, int line, const char* file);
    ZM_API void PrintMT(const char* format, ...) ZM_PRINTF(2, 3);

    /// Size of the message buffer: 256 at first, then doubled as needed for the longest message, up to 16384.
    int GetBufferSize() const { return m_BufferSize; }

    ZmLog(const ZmLog&) = delete;
    ZmLog& operator=(const ZmLog&) = delete;

private:
    ZmLog();
    ~ZmLog();

    void DeleteListeners();
    void LeaveToThreads();
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
    zm::ModuleNames& m_Modules;
    ZmMutex m_Mutex;
};
