#pragma once

#include "XString.h"

/// Walks over the files of a folder whose names match a pattern with '*' and '?', and over those of its subfolders, in
/// the system's order: first the folder's own files, then one subfolder after the other. ".*" at the end of a pattern
/// matches no extension, too: "*.*" is every name, and "readme.*" finds "readme". "." and ".." are never results; dot
/// files are files as others. The case of names counts as it does on the platform.
///
///     RKDirectoryParser files("data", "*.bmp", 1, 0);
///     while (const char* path = files.GetNextFile()) { ... }
///
/// Paths are joined with backslashes: "data\sub\a.bmp". Folders that cannot be read are left out. Links to folders
/// count as folders and are not entered.
class RKDirectoryParser {
public:
    /// `recursive`: into all subfolders, whatever their names. `listDirectories`: folders are results too; in a walk
    /// without subfolders those that match, otherwise each subfolder when the walk comes to it, but not the folders
    /// **below the first subfolder** of a folder: that is the contract, do not repair it.
    ZM_API RKDirectoryParser(const char* dir, const char* pattern, int recursive, int listDirectories);
    ZM_API ~RKDirectoryParser();
    RKDirectoryParser(const RKDirectoryParser&) = delete;
    RKDirectoryParser& operator=(const RKDirectoryParser&) = delete;

    /// Begins anew; null keeps the folder or the pattern of before.
    ZM_API void Reset(const char* dir, const char* pattern, int recursive, int listDirectories);

    /// The path of the next file, valid until the next call; null at the end.
    ZM_API const char* GetNextFile();

private:
    struct Walk;

    XString m_Directory;
    XString m_Pattern;
    Walk* m_Walk;
};
