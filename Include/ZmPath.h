#pragma once

#include "XString.h"

// Texts of paths. Nothing here looks at the disk, and the results are the same on every platform: the separator that
// is written is the backslash, and both are read. Functions that take paths to the disk (ZmFile, ZmFileSystem.h, ...)
// understand both everywhere.

/// The parts of a path: "C:", "\folder\", "name", ".ext". Each may be empty. The drive is one character and ':'; the
/// directory keeps its last separator and the extension its dot, the last one of the name. If a part does not fit (255
/// characters), or the path is null, all four are empty.
class RKPathSplitter {
public:
    /// Takes the path apart at once; keeps nothing of it.
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

/// The path of four parts, each of which may be null or empty. The drive counts with its first character; a directory
/// gets a separator at its end and an extension a dot in front if they have none. Empty if the path has more than 259
/// characters.
class RKPathMaker {
public:
    /// Puts the path together at once.
    ZM_API RKPathMaker(const char* drive, const char* dir, const char* name, const char* extension);

    /// The path, never null.
    const char* GetPath() const { return m_Path; }

private:
    char m_Path[260];
};

/// `out`, of 260 bytes, becomes the file in the directory: a backslash is added where the directory is not empty and
/// does not end with a separator. 1; or 0 and an empty text if that is too long. Null reads as empty. The arguments
/// must not overlap `out`.
ZM_API int ZmMakePath(char* out, const char* dir, const char* file);

/// Appends one backslash, also to a path that ends with one.
ZM_API void ZmAddDirectorySeparator(XString& path);

/// After a drive ("C:\") that stays as it is, turns every ':' and '/' into a backslash.
ZM_API void ZmConvertPathToSystemPath(XString& path);

/// `out` becomes the path as a URL. 0; or 4294967295 and an empty `out` for null.
///
/// A text that begins with "file://", in either case, and one without any of the characters " \+,;=@[]^{}" stays as it
/// is, without a prefix. Otherwise "file://" comes first, if the text holds no "://", backslashes become '/', and the
/// other characters of the set '%' and two hexadecimal digits in lower case. A URL of more than 65534 characters is
/// refused like null.
ZM_API unsigned long ZmEscapeURL(const char* in, XString& out);

/// Replaces '%' and the two characters after it, read as **two decimal digits**, by that number in decimal: "%41"
/// becomes "41", "%05" becomes "5". Not the reverse of ZmEscapeURL(); this is the contract, do not repair it. A '%'
/// with fewer than two characters after it stays.
ZM_API void ZmUnEscapeUrl(XString& text);
