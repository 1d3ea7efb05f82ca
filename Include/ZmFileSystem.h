#pragma once

#include "XString.h"

// Files and folders. Paths may use both separators on every platform. Functions return 1 on success and 0 on failure,
// also for a null path. Any thread may call.

/// Returns whether a file or folder of that name exists; a folder's name may end with a separator.
ZM_API int ZmFileExist(const char* path);

/// Renames within one volume. An existing file of the new name is replaced on POSIX systems; on Windows the call fails.
ZM_API int ZmRenameFile(const char* oldPath, const char* newPath);

/// Deletes a file, not a folder.
ZM_API int ZmDeleteFile(const char* path);

/// Creates one folder in an existing one.
ZM_API int ZmMakeDirectory(const char* path);

/// Removes an empty folder.
ZM_API int ZmRemoveDirectory(const char* path);

/// Deletes a folder and everything in it, without confirmation. Links in it are removed, but not their targets. Returns
/// 0 if any part of it remains.
ZM_API int ZmDeleteDirectory(const char* path);

/// Creates all missing folders above the last part of the path. A drive and the character after it ("C:\") are used
/// unchanged.
ZM_API int ZmCreateFileTree(const char* path);

/// Returns whether `size` more bytes can be written in that folder.
ZM_API int ZmTestDiskSpace(const char* dir, unsigned long size);

/// Returns the folder for temporary files, with a separator at the end; empty if the system does not report one.
ZM_API XString ZmGetTempPath();
