#pragma once

#include "XArray.h"
#include "XGUID.h"
#include "XString.h"
#include "ZmTimeProfiler.h"

/// Receives the messages of ZmLog: those of its modules whose level is in its mask. The base of listeners of one's own;
/// the library's write lines such as
///
///     [ZmMath] [WARNING] [05/03/2004 14:02:11] [mesh:42] : bad index
///
/// Listeners take no locks: the thread that prints calls them, under the lock of the log if it uses the MT calls.
class ZM_API ZmLogListener {
public:
    /// The time in each line.
    enum TimeFormat : int {
        TIME_NONE = 0,
        TIME_ELAPSED = 1,        ///< since the listener was made: "00h 01m 02s 345ms"
        TIME_EMPTY = 2,          ///< nothing, as before
        TIME_SHORT_MS = 3,       ///< local time: "05/03/04 14:02:11:345"
        TIME_LONG = 4,           ///< "05/03/2004 14:02:11"
        TIME_LONG_MS = 5,        ///< "05/03/2004 14:02:11:345"
        TIME_SHORT_SECONDS = 6,  ///< "05/03/04 14:02:11:345 (1078491731)"
    };

    /// Bits of SetFlags().
    enum Flags {
        DATED = 1,        ///< file: one for each day; console: the date in the title
        SOURCE_LINE = 2,  ///< the source file and line in each line
        KEEP_FILE = 4     ///< file: lines are added to what it holds
    };

    virtual ~ZmLogListener();

    /// Which class it is of.
    virtual const XGUID& GetGuid() const = 0;

    /// Takes a message that passed the filter. The texts are valid for the call.
    virtual void Output(int module, int level, int line, const char* file, const char* text) = 0;

    /// As given when it was made; a file is named after it.
    const XString& GetName() const { return m_Name; }

    /// Mask of ZmLog::Level; all five at first.
    int GetLevel() const { return m_Level; }
    void SetLevel(int level) { m_Level = level; }

    /// Of the listener's Flags; what a class does not know it ignores.
    int GetFlags() const { return m_Flags; }
    void SetFlags(int flags) { m_Flags = flags; }

    /// The time in the lines that follow.
    TimeFormat GetTimeFormatValue() const { return m_TimeFormat; }
    void SetTimeFormat(TimeFormat format) { m_TimeFormat = format; }

    /// Adds a module to those that the listener hears; twice is not noticed.
    void AddModule(int module);

    /// Whether it hears that module. A listener without modules hears nothing.
    bool IsModule(int module) const;

    /// The time of now in that format; empty where there is none.
    void GetDateAsString(TimeFormat format, XString& res);

protected:
    /// With all levels, no flags, no time and no module.
    explicit ZmLogListener(const char* name);
    ZmLogListener(const ZmLogListener&) = delete;
    ZmLogListener& operator=(const ZmLogListener&) = delete;

    /// A line with its line feed, terminated; valid until the next call. Empty without memory.
    struct Line {
        const char* text;     ///< the line
        unsigned int length;  ///< its characters
    };
    /// What the library's listeners write for a message.
    Line BuildLine(int module, int level, int line, const char* file, const char* text);

private:
    void FormatElapsed(XString& res);
    char* RoomForLine(unsigned int length);

    int m_Level;
    TimeFormat m_TimeFormat;
    int m_Flags;
    XString m_Name;
    XArray<int> m_Modules;
    ZmTimeProfiler m_Clock;

    // What a line is made of, kept from one to the next.
    char* m_Line;
    unsigned int m_LineSize;
    XString m_Date;
    int64_t m_DateSecond;  ///< for which m_DateText was made, in m_DateFormat
    const char* m_DateFormat;
    char m_DateText[32];
};
