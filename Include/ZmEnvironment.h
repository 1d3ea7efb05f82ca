#pragma once

#include "ZmApi.h"

// The environment variables of the process, which the processes that it starts inherit. Names are texts without '='
// and not empty; on Windows their case does not matter. Any thread may call; on POSIX systems no other thread may use
// the C library's getenv() while a variable is set or removed.

/// Copies the value with its terminator into a buffer of `size` bytes if it fits, else makes the buffer empty. The
/// length of the value in any case, or -1 if there is no such variable: null and 0 ask for the length alone.
ZM_API int ZmGetEnvironmentVariable(const char* name, char* buffer, unsigned int size);

/// 1, or 0 if it was not done, as for a name that cannot be. The value may be empty but not null.
ZM_API int ZmSetEnvironmentVariable(const char* name, const char* value);

/// 1, also if there was none; 0 as above.
ZM_API int ZmRemoveEnvironmentVariable(const char* name);
