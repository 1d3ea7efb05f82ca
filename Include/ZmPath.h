#pragma once

#include "XString.h"

// Path texts. Nothing here accesses the disk, and the results are the same on every platform: both separators are
// read, and the backslash is written. Functions that access files (ZmFile, ZmFileSystem.h, ...) accept both separators
// everywhere.

/// Splits a path into its parts: "C:", "\folder\", "name", ".ext". Each may be empty. The drive is one character and
/// ':'. The directory includes its last separator. The extension includes its dot, the last one of the name. If a part
/// is longer than 255 characters, or the path is null, all four are empty.
class RKPathSplitter {
public:
    /// Splits the path at once and does not refer to it afterwards.
    ZM_API explicit RKPathSplitter(const char* path);

    /// The parts, never null.
    const char* GetDrive() const { return m_Drive; }
    const char* GetDir() const { return m_Dir; }
    const char* GetName() const { return m_Name; }
    const char* GetExtension() const { return m_Extension; }

private:
    char m_Drive[3];
    char m_Dir[256];
    char m_Name[256];
    char m_Extension[256];
};

/// Joins a path from four parts, each of which may be null or empty. Only the first character of the drive counts. A
/// separator is appended to the directory and a dot prepended to the extension if missing. Empty if the path would have
/// more than 259 characters.
class RKPathMaker {
public:
    /// Joins the path at once.
    ZM_API RKPathMaker(const char* drive, const char* dir, const char* name, const char* extension);

    /// The path, never null.
    const char* GetPath() const { return m_Path; }

private:
    char m_Path[260];
};

/// Writes the path of a file in a directory to `out`, which has 260 bytes. A backslash is added unless the directory is
/// empty or ends with a separator. Returns 1, or 0 with an empty text if the path is too long. Null is treated as
/// empty. The arguments must not overlap `out`.
ZM_API int ZmMakePath(char* out, const char* dir, const char* file);

/// Appends one backslash, even if the path already ends with one.
ZM_API void ZmAddDirectorySeparator(XString& path);

/// Replaces every ':' and '/' with a backslash, except in a drive at the start ("C:\").
ZM_API void ZmConvertPathToSystemPath(XString& path);

/// Converts a path to a URL. Returns 0, or 4294967295 with an empty `out` for null.
///
/// A text that begins with "file://", in either case, or that contains none of the characters " \+,;=@[]^{}" is copied
/// unchanged, without a prefix. Otherwise "file://" is prepended unless the text contains "://", backslashes become
/// '/', and the other characters of the set become '%' and two lower-case hexadecimal digits. If the URL would have
/// more than 65534 characters, the call fails as for null.
ZM_API unsigned long ZmEscapeURL(const char* in, XString& out);

/// Replaces '%' and the two characters after it, read as **two decimal digits**, with that number in decimal: "%41"
/// becomes "41", "%05" becomes "5". Not the inverse of ZmEscapeURL(). A '%' followed by fewer than two characters stays
/// unchanged.
ZM_API void ZmUnEscapeUrl(XString& text);
