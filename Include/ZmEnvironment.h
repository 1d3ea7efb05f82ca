#pragma once

#include "ZmApi.h"

// The environment variables of the process; child processes inherit them. A name must not be empty or contain '='; on
// Windows its case does not matter. Any thread may call these functions. On POSIX systems no other thread may use the C
// library's getenv() while a variable is being set or removed.

/// Copies the value and its terminator into a buffer of `size` bytes if it fits; otherwise makes the buffer empty.
/// Returns the length of the value in either case, or -1 if there is no such variable. Pass null and 0 to query the
/// length only.
ZM_API int ZmGetEnvironmentVariable(const char* name, char* buffer, unsigned int size);

/// Sets a variable. Returns 1 on success, 0 on failure, for example for an invalid name. The value may be empty but not
/// null.
ZM_API int ZmSetEnvironmentVariable(const char* name, const char* value);

/// Removes a variable. Returns 1, also if there was no such variable, or 0 on failure.
ZM_API int ZmRemoveEnvironmentVariable(const char* name);
