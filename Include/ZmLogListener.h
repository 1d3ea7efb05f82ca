#pragma once

#include "XArray.h"
#include "XGUID.h"
#include "XString.h"
#include "ZmTimeProfiler.h"

/// Receives the messages of ZmLog: those of its modules whose level is in its mask. Derive from it to write your own
/// listener. The listeners of the library write lines such as
///
///     [ZmMath] [WARNING] [05/03/2004 14:02:11] [mesh:42] : bad index
///
/// Listeners take no locks: they run in the thread that prints, under the lock of the log if it uses the MT calls.
class ZM_API ZmLogListener {
public:
    /// Format of the time in each line.
    enum TimeFormat : int {
        TIME_NONE = 0,
        TIME_ELAPSED = 1,        ///< since the listener was created: "00h 01m 02s 345ms"
        TIME_EMPTY = 2,          ///< no time, like TIME_NONE
        TIME_SHORT_MS = 3,       ///< local time: "05/03/04 14:02:11:345"
        TIME_LONG = 4,           ///< "05/03/2004 14:02:11"
        TIME_LONG_MS = 5,        ///< "05/03/2004 14:02:11:345"
        TIME_SHORT_SECONDS = 6,  ///< "05/03/04 14:02:11:345 (1078491731)"
    };

    /// Bits of SetFlags().
    enum Flags {
        DATED = 1,        ///< file: a new file each day; console: the date in the title
        SOURCE_LINE = 2,  ///< the source file and line in each line
        KEEP_FILE = 4,    ///< file: appends to the existing contents
        ESCAPED = 8       ///< control characters of messages as "\x0a": for messages that quote data from outside
    };

    virtual ~ZmLogListener();

    /// Identifies the class of the listener.
    virtual const XGUID& GetGuid() const = 0;

    /// Receives a message that passed the filter. The texts are valid only during the call.
    virtual void Output(int module, int level, int line, const char* file, const char* text) = 0;

    /// The name given at creation; a log file is named after it.
    const XString& GetName() const { return m_Name; }

    /// Mask of ZmLog::Level; initially all five levels.
    int GetLevel() const { return m_Level; }
    void SetLevel(int level) { m_Level = level; }

    /// The listener's Flags; each class ignores the flags it does not know.
    int GetFlags() const { return m_Flags; }
    void SetFlags(int flags) { m_Flags = flags; }

    /// Time format of the following lines.
    TimeFormat GetTimeFormatValue() const { return m_TimeFormat; }
    void SetTimeFormat(TimeFormat format) { m_TimeFormat = format; }

    /// Adds a module to the ones listened to; adding it twice has no effect.
    void AddModule(int module);

    /// Returns whether the listener listens to that module. A listener without modules receives nothing.
    bool IsModule(int module) const;

    /// Writes the current time in that format; empty for formats without a time.
    void GetDateAsString(TimeFormat format, XString& res);

protected:
    /// Starts with all levels, no flags, no time and no modules.
    explicit ZmLogListener(const char* name);
    ZmLogListener(const ZmLogListener&) = delete;
    ZmLogListener& operator=(const ZmLogListener&) = delete;

    /// A NUL-terminated line, including its line feed; valid until the next call. Empty if memory runs out.
    struct Line {
        const char* text;     ///< the line
        unsigned int length;  ///< its length in characters
    };
    /// Builds the line that the library's listeners write for a message.
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

    // Buffers for building a line, reused from line to line.
    char* m_Line;
    unsigned int m_LineSize;
    XString m_Date;
    int64_t m_DateSecond;  ///< the second for which m_DateText was built, in m_DateFormat
    const char* m_DateFormat;
    char m_DateText[32];
};
