#pragma once

#include "ZmFile.h"
#include "ZmLogListener.h"

/// Writes lines to a text file: directory + name + "." + extension, in the DATED form directory + name +
/// "[04 03 05]." + extension, a new file for each day of the local time. The file is opened by the first line, with the
/// folders it needs, and replaced unless KEEP_FILE is set. Each line is on the disk when Output() returns. Where that
/// fails the line is lost, or cut, and the next one tries again, on a line of its own; what was written before is not
/// replaced then.
class ZM_API ZmFileListener : public ZmLogListener {
public:
    /// What GetGuid() of such a listener returns.
    static const XGUID m_Guid;

    /// Makes such a listener: for ZmLog::RegisterListenerFactory().
    static ZmLogListener* ListenerFactory(const char* name);

    ~ZmFileListener() override;
    const XGUID& GetGuid() const override;
    void Output(int module, int level, int line, const char* file, const char* text) override;

    /// Where the file is, that of the running program at first. It must end with a separator. For files that are
    /// opened from now on; null reads as empty.
    const char* GetDirectory() const { return m_Directory.Text(); }
    void SetDirectory(const char* directory) { m_Directory = directory; }

    /// The extension without its dot, "log" at first.
    const char* GetExt() const { return m_Extension.Text(); }
    void SetExt(const char* extension) { m_Extension = extension; }

private:
    explicit ZmFileListener(const char* name);

    int Today();
    void OpenFile();

    int m_Day;  ///< of the year, for which the file was opened
    XString m_Extension;
    XString m_Directory;
    ZmFile m_File;
    XString m_Path;
    XString m_BegunPath;    ///< the file that was opened last; it is only added to
    int64_t m_TodaySecond;  ///< for which the next two were computed
    int m_Today = 0;
    char m_Date[16] = {};
};
