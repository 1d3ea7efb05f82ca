#pragma once

#include "Logging/LogClock.h"

#include <time.h>

#include <string>

/// While it lives, the clock of log lines shows s_Now.
class SetLogClock {
public:
    SetLogClock() : m_Old(zm::g_LogClock)
    {
        zm::g_LogClock = {[] { return s_Now / 1000; }, [] { return s_Now; }};
    }
    ~SetLogClock() { zm::g_LogClock = m_Old; }
    SetLogClock(const SetLogClock&) = delete;
    SetLogClock& operator=(const SetLogClock&) = delete;

    static inline int64_t s_Now = 0;  ///< milliseconds since 1970

private:
    zm::LogClock m_Old;
};

/// Milliseconds since 1970 of a local time.
inline int64_t LocalMilliseconds(int year, int month, int day, int hour, int minute, int second, int millisecond)
{
    tm parts = {};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = -1;
    return int64_t(mktime(&parts)) * 1000 + millisecond;
}

/// strftime() for a time in milliseconds since 1970.
inline std::string LocalText(int64_t milliseconds, const char* format)
{
    const time_t seconds = time_t(milliseconds / 1000);
    char text[64];
    return std::string(text, strftime(text, sizeof(text), format, localtime(&seconds)));
}
