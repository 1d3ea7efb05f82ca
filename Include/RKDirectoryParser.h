#pragma once

#include "XString.h"

/// Lists the files of a folder, and optionally of its subfolders, whose names match a pattern with '*' and '?'. The
/// order is that of the system: first the folder's own files, then one subfolder after the other. ".*" at the end of a
/// pattern also matches a missing extension: "*.*" matches every name, and "readme.*" matches "readme". "." and ".."
/// are never returned; dot files are ordinary files. Case matters as it does on the platform.
///
///     RKDirectoryParser files("data", "*.bmp", 1, 0);
///     while (const char* path = files.GetNextFile()) { ... }
///
/// Paths are joined with backslashes: "data\sub\a.bmp". Unreadable folders are skipped. Links to folders count as
/// folders but are not entered. If memory runs out, the walk ends.
class RKDirectoryParser {
public:
    /// `recursive`: enters all subfolders, whatever their names. `listDirectories`: returns folders as well. Without
    /// `recursive` these are the folders that match; with it, each subfolder when it is reached, except the folders
    /// **below the first subfolder** of a folder.
    ZM_API RKDirectoryParser(const char* dir, const char* pattern, int recursive, int listDirectories);
    ZM_API ~RKDirectoryParser();
    RKDirectoryParser(const RKDirectoryParser&) = delete;
    RKDirectoryParser& operator=(const RKDirectoryParser&) = delete;

    /// Starts again; null keeps the previous folder or pattern.
    ZM_API void Reset(const char* dir, const char* pattern, int recursive, int listDirectories);

    /// Returns the path of the next file, valid until the next call, or null at the end.
    ZM_API const char* GetNextFile();

private:
    struct Walk;

    XString m_Directory;
    XString m_Pattern;
    Walk* m_Walk;
};
