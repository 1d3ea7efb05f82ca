#include "ZmLogListener.h"

#include "Logging/EscapedText.h"
#include "Logging/LogClock.h"
#include "Logging/LogNames.h"
#include "Platform/OsClock.h"

#include <algorithm>
#include <charconv>
#include <stdio.h>
#include <string.h>

namespace {

constexpr int kAllLevels = 31;
constexpr unsigned kLineSize = 1024;  // enough for most lines

// The date part of a format, for strftime().
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

/// A text with its length; null has length 0.
struct Piece {
    Piece(const char* t) : text(t), length(t != nullptr ? unsigned(strlen(t)) : 0) {}
    Piece(const XString& string) : text(string.Text()), length(string.Length()) {}

    const char* text;
    unsigned length;
};

/// Appends pieces to a buffer that is known to be large enough.
class LineWriter {
public:
    explicit LineWriter(char* begin) : m_Begin(begin), m_End(begin) {}

    LineWriter& operator<<(const Piece& piece) { return Put(piece.text, piece.length); }
    template <size_t Size>
    LineWriter& operator<<(const char (&literal)[Size])
    {
        return Put(literal, Size - 1);
    }
    LineWriter& operator<<(int value)
    {
        constexpr int kDigits = 11;
        m_End = std::to_chars(m_End, m_End + kDigits, value).ptr;
        return *this;
    }
    void PutEscaped(const Piece& piece, size_t room) { m_End += zm::EscapeText(m_End, room, piece.text, piece.length); }
    unsigned Finish()
    {
        *m_End = 0;
        return unsigned(m_End - m_Begin);
    }

private:
    LineWriter& Put(const char* text, size_t length)
    {
        if (length != 0) {
            memcpy(m_End, text, length);
            m_End += length;
        }
        return *this;
    }

    char* const m_Begin;
    char* m_End;
};

}  // namespace

ZmLogListener::ZmLogListener(const char* name)
    : m_Level(kAllLevels), m_TimeFormat(TIME_NONE), m_Flags(0), m_Name(name), m_Line(nullptr), m_LineSize(0),
      m_DateSecond(INT64_MIN), m_DateFormat(nullptr), m_DateText()
{
    m_Clock.Reset();
}

ZmLogListener::~ZmLogListener()
{
    zm::DeleteBlock(m_Line);
}

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
    const bool whole = format == TIME_LONG;
    const int64_t now = whole ? zm::g_LogClock.seconds() : zm::g_LogClock.milliseconds();
    const int64_t second = whole ? now : now / 1000;
    const int millisecond = whole ? 0 : int(now % 1000);
    // Most lines fall into the same second as the one before, and this conversion costs as much as the rest of a line.
    if (second != m_DateSecond || date != m_DateFormat) {
        tm parts;
        const bool known = zm::LocalTime(second, parts);
        m_DateText[known ? strftime(m_DateText, sizeof(m_DateText), date, &parts) : 0] = 0;
        m_DateSecond = second;
        m_DateFormat = date;
    }
    if (whole) {
        res = m_DateText;
    } else if (format == TIME_SHORT_SECONDS) {
        res.Format("%s:%.3d (%u)", m_DateText, millisecond, unsigned(second));
    } else {
        res.Format("%s:%.3d", m_DateText, millisecond);
    }
}

char* ZmLogListener::RoomForLine(unsigned int length)
{
    if (length > m_LineSize) {
        zm::DeleteBlock(m_Line);
        m_LineSize = std::max(length, kLineSize);
        m_Line = static_cast<char*>(zm::NewBlock(m_LineSize));
        m_LineSize = m_Line != nullptr ? m_LineSize : 0;
    }
    return m_Line;
}

ZmLogListener::Line ZmLogListener::BuildLine(int module, int level, int line, const char* file, const char* text)
{
    const bool located = (m_Flags & SOURCE_LINE) != 0;
    GetDateAsString(m_TimeFormat, m_Date);
    const Piece name = zm::ModuleNames::Instance().NameOf(module),
                source = located && file ? AfterLastBackslash(file) : "";
    const Piece message = text;
    constexpr unsigned kAround = 48;  // the level, the line number and the text between the pieces
    const bool escaped = (m_Flags & ESCAPED) != 0;
    const unsigned room = message.length * unsigned(escaped ? zm::kLongestEscape : 1);
    const unsigned length = name.length + m_Date.Length() + source.length + room + kAround;
    char* const begin = RoomForLine(length);
    if (begin == nullptr) {
        return {"", 0};
    }
    LineWriter res(begin);
    if (name.text != nullptr) {
        res << "[" << name << "] ";
    }
    res << "[" << Piece(zm::LevelName(level)) << "] ";
    if (!m_Date.IsEmpty()) {
        res << "[" << m_Date << "] ";
    }
    if (located) {
        res << "[" << source << ":" << line << "] ";
    }
    res << ": ";
    if (escaped) {
        res.PutEscaped(message, room);
    } else {
        res << message;
    }
    res << "\n";
    return {begin, res.Finish()};
}
