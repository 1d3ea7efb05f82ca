#include "ZmFileListener.h"

#include "Files/RegularFile.h"
#include "Logging/LogClock.h"
#include "Platform/OsClock.h"
#include "Platform/PathText.h"
#include "ZmFileSystem.h"
#include "ZmModule.h"

namespace {

constexpr int kNoDay = -1;

XString ProgramDirectory()
{
    char path[32768];  // no system has longer ones
    unsigned int length = ZmGetModuleFileName(nullptr, path, sizeof(path));
    while (length != 0 && !zm::IsSeparator(path[length - 1])) {
        --length;
    }
    path[length] = 0;
    return XString(path);
}

// Whether a full disk or a killed process has left an incomplete last line. Regular files only: reading a pipe would
// block.
bool EndsInsideLine(const char* path)
{
    ZmFile file;
    char last = '\n';
    return zm::OpenRegularFile(file, path, ZmFile::READONLY) && file.Seek(-1, ZmStream::END) &&
           file.Read(&last, 1) == 1 && last != '\n';
}

}  // namespace

const XGUID ZmFileListener::m_Guid = {0x1FA732C0, 0x3BBE0666};

ZmFileListener::ZmFileListener(const char* name)
    : ZmLogListener(name), m_Day(kNoDay), m_Extension("log"), m_Directory(ProgramDirectory()), m_TodaySecond(INT64_MIN)
{
}

ZmFileListener::~ZmFileListener() = default;

ZmLogListener* ZmFileListener::ListenerFactory(const char* name)
{
    return new (std::nothrow) ZmFileListener(name);
}

const XGUID& ZmFileListener::GetGuid() const
{
    return m_Guid;
}

// The day of the year, computed once per second; also updates the date that dated file names contain.
int ZmFileListener::Today()
{
    const int64_t second = zm::g_LogClock.seconds();
    if (second != m_TodaySecond) {
        tm parts;
        m_TodaySecond = second;
        m_Today = zm::LocalTime(second, parts) ? parts.tm_yday : kNoDay;
        if (m_Today == kNoDay || strftime(m_Date, sizeof(m_Date), "[%y %m %d]", &parts) == 0) {
            m_Date[0] = 0;
        }
    }
    return m_Today;
}

void ZmFileListener::OpenFile()
{
    const bool dated = (GetFlags() & DATED) != 0;
    if (m_File.IsValid() && (!dated || m_Day == Today())) {
        return;
    }
    m_File.Close();
    m_Path = m_Directory;
    m_Path << GetName();
    if (dated) {
        m_Day = Today();
        m_Path << m_Date;
    }
    m_Path << "." << m_Extension;
    ZmCreateFileTree(m_Path.Text());
    // A file that this listener has begun is continued, not overwritten, when it is opened again after an error.
    const bool append = (GetFlags() & KEEP_FILE) != 0 || m_Path == m_BegunPath;
    const int mode = (append ? ZmFile::APPEND : ZmFile::WRITEONLY) | ZmFile::TEXT;
    const bool cut = append && EndsInsideLine(m_Path.Text());
    if (m_File.Open(m_Path.Text(), ZmFile::OpenMode(mode))) {
        m_BegunPath = m_Path;
        if (cut && !m_File.WriteLine("\n", 1)) {
            m_File.Close();
        }
    }
}

void ZmFileListener::Output(int module, int level, int line, const char* file, const char* text)
{
    OpenFile();
    const Line complete = BuildLine(module, level, line, file, text);
    if (!m_File.WriteLine(complete.text, complete.length)) {
        m_File.Close();  // the next line opens it again
    }
}
