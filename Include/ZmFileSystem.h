#pragma once

#include "XString.h"

// Files and folders. Paths may use both separators on every platform. Results are 1 if it was done and 0 if not, for
// a null path, too. Any thread.

/// Whether there is a file or a folder of that name; a folder's may end with a separator.
ZM_API int ZmFileExist(const char* path);

/// Within one disk. On POSIX systems an existing file of the new name is replaced, on Windows that fails.
ZM_API int ZmRenameFile(const char* oldPath, const char* newPath);

/// A file, not a folder.
ZM_API int ZmDeleteFile(const char* path);

/// One folder, in an existing one.
ZM_API int ZmMakeDirectory(const char* path);

/// An empty folder.
ZM_API int ZmRemoveDirectory(const char* path);

/// A folder with everything in it, without asking. Links in it are removed; what they point to stays. 0 if anything of
/// it remains.
ZM_API int ZmDeleteDirectory(const char* path);

/// Makes the folders in which the path's last part lies, where they do not exist. A drive, with the character after it
/// ("C:\"), is taken as it is.
ZM_API int ZmCreateFileTree(const char* path);

/// Whether so many bytes may still be written in that folder.
ZM_API int ZmTestDiskSpace(const char* dir, unsigned long size);

/// The folder for temporary files, ending with a separator; empty if the system does not tell.
ZM_API XString ZmGetTempPath();
