#pragma once

#include "ZmFile.h"
#include "ZmLogListener.h"

/// Writes lines to a text file: directory + name + "." + extension. With DATED the file is directory + name +
/// "[04 03 05]." + extension, with a new file for each day of the local time. The first line opens the file, creating
/// missing folders, and replaces an existing file unless KEEP_FILE is set. Each line has been written to the file when
/// Output() returns. If that fails, the line is lost or cut, and the next line tries again on a new line; it does not
/// replace what was already written.
class ZM_API ZmFileListener : public ZmLogListener {
public:
    /// Result of GetGuid().
    static const XGUID m_Guid;

    /// Creates a listener: for ZmLog::RegisterListenerFactory().
    static ZmLogListener* ListenerFactory(const char* name);

    ~ZmFileListener() override;
    const XGUID& GetGuid() const override;
    void Output(int module, int level, int line, const char* file, const char* text) override;

    /// Folder of the file, initially that of the running program. It must end with a separator. Applies to files opened
    /// afterwards; null is treated as empty.
    const char* GetDirectory() const { return m_Directory.Text(); }
    void SetDirectory(const char* directory) { m_Directory = directory; }

    /// The extension without its dot, initially "log".
    const char* GetExt() const { return m_Extension.Text(); }
    void SetExt(const char* extension) { m_Extension = extension; }

private:
    explicit ZmFileListener(const char* name);

    int Today();
    void OpenFile();

    int m_Day;  ///< day of the year for which the file was opened
    XString m_Extension;
    XString m_Directory;
    ZmFile m_File;
    XString m_Path;
    XString m_BegunPath;    ///< the file that was opened last; if opened again, it is appended to
    int64_t m_TodaySecond;  ///< the second for which the next two were computed
    int m_Today = 0;
    char m_Date[16] = {};
};
