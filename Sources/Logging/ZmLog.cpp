#include "ZmLog.h"

#include "Logging/EscapedText.h"
#include "Logging/LibraryLog.h"
#include "Logging/LogNames.h"
#include "Logging/PlainFormat.h"
#include "Platform/FirstUse.h"
#include "Platform/OwnMutexHolder.h"
#include "ZmConsoleListener.h"
#include "ZmFileListener.h"
#include "ZmOutputDebugListener.h"

#include <algorithm>
#include <atomic>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr int kFirstBuffer = 256, kGrowsBelow = 9000, kLargestBuffer = 16384;

/// Set when the log is destroyed, for destructors that print after it.
std::atomic<bool> g_Destroyed{false};

bool IsDestroyed()
{
    return g_Destroyed.load(std::memory_order_relaxed);
}

}  // namespace

namespace zm {

int g_LibraryModule = -1;

namespace {

// Names from files are quoted in warnings and must not forge lines of the log.
__attribute__((noinline)) void PrintEscaped(ZmLog& log, const char* text)
{
    char escaped[kLargestBuffer];
    escaped[EscapeText(escaped, sizeof(escaped) - 1, text, strlen(text))] = 0;
    log.PrintMT("%s", escaped);
}

}  // namespace

void Warn(int line, const char* file, const char* format, ...)
{
    char text[kLargestBuffer];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    ZmLog& log = ZmLog::GetLog().SetInformationMT(g_LibraryModule, ZmLog::LEVEL_WARNING, line, file);
    if (std::any_of(text, text + strlen(text), IsControl)) {
        PrintEscaped(log, text);
    } else {
        log.PrintMT("%s", text);
    }
}

}  // namespace zm

ZmLog& ZmLog::GetLog()
{
    static zm::FirstUse<ZmLog> log;
    return log.Get([](void* memory) {
        new (memory) ZmLog;
        atexit([] { zm::ThreadsOutliveExit() ? GetLog().LeaveToThreads() : GetLog().~ZmLog(); });
    });
}

ZmLog::ZmLog()
    : m_BufferSize(kFirstBuffer), m_Buffer(static_cast<char*>(malloc(kFirstBuffer))), m_Module(0), m_Line(0),
      m_Level(LEVEL_DEBUG), m_Modules(zm::ModuleNames::Instance())
{
    RegisterListenerFactory(ZmOutputDebugListener::m_Guid, ZmOutputDebugListener::ListenerFactory);
    RegisterListenerFactory(ZmFileListener::m_Guid, ZmFileListener::ListenerFactory);
    RegisterListenerFactory(ZmConsoleListener::m_Guid, ZmConsoleListener::ListenerFactory);
}

ZmLog::~ZmLog()
{
    g_Destroyed.store(true, std::memory_order_relaxed);
    free(m_Buffer);
    DeleteListeners();
    m_Modules.Clear();
}

void ZmLog::DeleteListeners()
{
    for (auto item = m_Listeners.Begin(); item != m_Listeners.End(); ++item) {
        delete item->value;
    }
    m_Listeners.Clear();
}

// Threads that still run when the process exits may print: the log stays for them, without listeners. If one of these
// never returns, the exit does not wait for it.
void ZmLog::LeaveToThreads()
{
    constexpr int kMostTries = 100;
    for (int tries = 0; tries < kMostTries; ++tries) {
        if (m_Mutex.TryEnterMutex() != 0) {
            DeleteListeners();
            m_Mutex.LeaveMutex();
            return;
        }
        zm::SleepMilliseconds(1);
    }
}

const char* ZmLog::GetLevelDesc(Level level)
{
    return zm::LevelName(level);
}

int ZmLog::RegisterModule(const char* name)
{
    return m_Modules.Add(name);
}

int ZmLog::IsModule(const char* name) const
{
    // Returns the position, not the id: callers add 1 (ZmLogTest, ModulesAreNumberedAndPositionsAreOneLess).
    return m_Modules.Find(name);
}

const char* ZmLog::GetModule(int id) const
{
    return m_Modules.NameOf(id);
}

int ZmLog::RegisterListenerFactory(const XGUID& type, ListenerFactory factory)
{
    return m_Factories.InsertUnique(type, factory);
}

ZmLogListener* ZmLog::RegisterListener(const XGUID& type, const char* name, int module)
{
    if (ZmLogListener* listener = GetListener(name)) {
        if (listener->GetGuid() != type) {
            return nullptr;
        }
        listener->AddModule(module);
        return listener;
    }
    const ListenerFactory* factory = m_Factories.LookUp(type);
    ZmLogListener* listener = factory != nullptr && *factory != nullptr ? (*factory)(name) : nullptr;
    if (listener == nullptr) {
        return nullptr;
    }
    listener->AddModule(module);
    if (!m_Listeners.InsertUnique(name, listener)) {
        delete listener;
        return nullptr;
    }
    return listener;
}

int ZmLog::UnregisterListener(const char* name)
{
    if (ZmLogListener* listener = m_Listeners.Remove(name)) {
        delete listener;
        return 1;
    }
    return 0;
}

ZmLogListener* ZmLog::GetListener(const char* name)
{
    ZmLogListener** listener = m_Listeners.LookUp(name);
    return listener != nullptr ? *listener : nullptr;
}

const ZmLogListener* ZmLog::GetListener(const char* name) const
{
    return const_cast<ZmLog*>(this)->GetListener(name);
}

ZmLog& ZmLog::SetInformation(int module, Level level, int line, const char* file)
{
    if (!IsDestroyed()) {
        m_Module = module;
        m_Level = level;
        m_Line = line;
        m_File = file;
    }
    return *this;
}

ZmLog& ZmLog::SetInformationMT(int module, Level level, int line, const char* file)
{
    zm::OwnMutexHolder::Enter(m_Mutex);
    return SetInformation(module, level, line, file);
}

void ZmLog::Print(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    VPrint(format, arguments);
    va_end(arguments);
}

void ZmLog::PrintMT(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    VPrint(format, arguments);
    va_end(arguments);
    zm::OwnMutexHolder::Leave(m_Mutex);
}

void ZmLog::VPrint(const char* format, va_list arguments)
{
    if (!IsDestroyed() && !m_Listeners.IsEmpty()) {
        Dispatch(Format(format, arguments));
    }
}

const char* ZmLog::Format(const char* format, va_list arguments)
{
    if (m_Buffer == nullptr) {
        m_Buffer = static_cast<char*>(malloc(size_t(m_BufferSize)));
    }
    if (m_Buffer == nullptr || format == nullptr) {
        return "";
    }
    va_list again;
    va_copy(again, arguments);
    const bool plain = zm::FormatPlain(m_Buffer, m_BufferSize, format, again);
    va_end(again);
    return plain ? m_Buffer : FormatAny(format, arguments);
}

// Truncates messages that do not fit in the largest buffer.
const char* ZmLog::FormatAny(const char* format, va_list arguments)
{
    if (zm::EndsInConversion(format)) {
        return CopyText(format);
    }
    va_list again;
    va_copy(again, arguments);
    const int length = vsnprintf(m_Buffer, size_t(m_BufferSize), format, arguments);
    if (length >= m_BufferSize && GrowBuffer(length + 1)) {
        vsnprintf(m_Buffer, size_t(m_BufferSize), format, again);
    }
    va_end(again);
    return length >= 0 ? m_Buffer : CopyText(format);
}

// Prints a format that the C library rejects verbatim, rather than losing the message.
const char* ZmLog::CopyText(const char* text)
{
    const size_t length = strnlen(text, kLargestBuffer - 1);
    if (length >= size_t(m_BufferSize)) {
        GrowBuffer(int(length) + 1);
    }
    const size_t copied = std::min(length, size_t(m_BufferSize) - 1);
    memcpy(m_Buffer, text, copied);
    m_Buffer[copied] = 0;
    return m_Buffer;
}

bool ZmLog::GrowBuffer(int needed)
{
    int size = m_BufferSize;
    while (size < needed && size < kGrowsBelow) {
        size *= 2;
    }
    char* buffer = size != m_BufferSize ? static_cast<char*>(malloc(size_t(size))) : nullptr;
    if (buffer == nullptr) {
        return false;
    }
    free(m_Buffer);
    m_Buffer = buffer;
    m_BufferSize = size;
    return true;
}

// Listeners may themselves print, register and unregister. The state of this message is therefore moved out of reach
// during the loop and restored afterwards.
void ZmLog::Dispatch(const char* text)
{
    char* const buffer = m_Buffer;
    const int bufferSize = m_BufferSize, module = m_Module, level = m_Level, line = m_Line;
    XString file;
    file.Swap(m_File);
    m_Buffer = nullptr;
    for (int i = 0; i < m_Listeners.Size(); ++i) {
        ZmLogListener* listener = m_Listeners.ItemAt(i).value;
        if (listener->IsModule(module) && (level & listener->GetLevel()) != 0) {
            listener->Output(module, level, line, file.Text(), text);
        }
    }
    // Keeps the larger buffer, even if only a nested message needed it.
    const bool grown = m_BufferSize > bufferSize;
    free(grown ? buffer : m_Buffer);
    m_Buffer = grown ? m_Buffer : buffer;
    m_File.Swap(file);
    m_Module = module;
    m_Level = level;
    m_Line = line;
}
