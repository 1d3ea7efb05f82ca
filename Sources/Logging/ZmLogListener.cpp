#include "ZmLogListener.h"

#include "Logging/LogClock.h"
#include "Platform/OsClock.h"
#include "ZmLog.h"

#include <algorithm>
#include <stdio.h>

namespace zm {

int64_t (*g_LogClock)() = ReadWallClock;

}  // namespace zm

namespace {

constexpr int kAllLevels = 31;
constexpr int kReservedLine = 1023;  // for most lines, so that they are built without growing

// How a format begins, for strftime().
const char* DateOf(ZmLogListener::TimeFormat format)
{
    switch (format) {
    case ZmLogListener::TIME_SHORT_MS:
    case ZmLogListener::TIME_SHORT_SECONDS: return "%d/%m/%y %H:%M:%S";
    case ZmLogListener::TIME_LONG:
    case ZmLogListener::TIME_LONG_MS: return "%d/%m/%Y %H:%M:%S";
    default: return nullptr;
    }
}

const char* AfterLastBackslash(const char* file)
{
    const char* last = strrchr(file, '\\');
    return last != nullptr ? last + 1 : file;
}

}  // namespace

ZmLogListener::ZmLogListener(const char* name)
    : m_Level(kAllLevels), m_TimeFormat(TIME_NONE), m_Flags(0), m_Name(name), m_DateSecond(INT64_MIN),
      m_DateFormat(nullptr), m_DateText()
{
    m_Clock.Reset();
    m_Line.Reserve(kReservedLine);
}

ZmLogListener::~ZmLogListener() = default;

void ZmLogListener::AddModule(int module)
{
    m_Modules.PushBack(module);
}

bool ZmLogListener::IsModule(int module) const
{
    return std::find(m_Modules.Begin(), m_Modules.End(), module) != m_Modules.End();
}

void ZmLogListener::FormatElapsed(XString& res)
{
    constexpr int kSecond = 1000, kMinute = 60 * kSecond, kHour = 60 * kMinute;
    const int elapsed = int(std::min(double(m_Clock.Current()), double(INT32_MAX)));
    res.Format("%.2dh %.2dm %.2ds %.3dms", elapsed / kHour, elapsed % kHour / kMinute, elapsed % kMinute / kSecond,
               elapsed % kSecond);
}

void ZmLogListener::GetDateAsString(TimeFormat format, XString& res)
{
    const char* date = DateOf(format);
    if (date == nullptr) {
        res = "";
        if (format == TIME_ELAPSED) {
            FormatElapsed(res);
        }
        return;
    }
    const int64_t now = zm::g_LogClock(), second = now / 1000;
    const int millisecond = int(now % 1000);
    // Most lines come in the same second as the one before; the conversion costs as much as all the rest of a line.
    if (second != m_DateSecond || date != m_DateFormat) {
        tm parts;
        const bool known = zm::LocalTime(second, parts);
        m_DateText[known ? strftime(m_DateText, sizeof(m_DateText), date, &parts) : 0] = 0;
        m_DateSecond = second;
        m_DateFormat = date;
    }
    if (format == TIME_LONG) {
        res = m_DateText;
    } else if (format == TIME_SHORT_SECONDS) {
        res.Format("%s:%.3d (%u)", m_DateText, millisecond, unsigned(second));
    } else {
        res.Format("%s:%.3d", m_DateText, millisecond);
    }
}

const XString& ZmLogListener::BuildLine(int module, int level, int line, const char* file, const char* text)
{
    m_Line = "";
    if (const char* name = ZmLog::GetLog().GetModule(module)) {
        m_Line << "[" << name << "] ";
    }
    m_Line << "[" << ZmLog::GetLevelDesc(ZmLog::Level(level)) << "] ";
    if (m_TimeFormat != TIME_NONE) {
        GetDateAsString(m_TimeFormat, m_Date);
        if (!m_Date.IsEmpty()) {
            m_Line << "[" << m_Date << "] ";
        }
    }
    if ((m_Flags & SOURCE_LINE) != 0) {
        m_Line << "[" << AfterLastBackslash(file != nullptr ? file : "") << ":" << line << "] ";
    }
    m_Line << ": " << text << "\n";
    return m_Line;
}
