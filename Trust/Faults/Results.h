#pragma once

#include "Support/TemporaryFolder.h"

#include <string>

// What the scenarios share: the contents of their files, the place for what they read, and their checks. Under the
// faults the scenarios themselves allocate nothing.

constexpr char kWrongBytes[] = "wrong bytes", kLost[] = "old file lost", kUndone[] = "success without effect",
               kPartial[] = "success in part";

inline const std::string kLarge(70000, 'b'), kOther(50000, 'd');

inline char g_Bytes[100000];

inline void Nothing() {}

inline const char* Always(int)
{
    return nullptr;
}

/// Whether a successful scenario has read the large contents.
inline const char* CheckRead(int res)
{
    return res != 0 && kLarge.compare(0, kLarge.size(), g_Bytes, kLarge.size()) != 0 ? kWrongBytes : nullptr;
}

/// Whether the file holds what the answer says: the new bytes after a success, the old ones after a failure.
inline const char* OldOrNew(const char* path, int res, const std::string& old, const std::string& fresh)
{
    const std::string bytes = BytesOf(path);
    return bytes == (res != 0 ? fresh : old) ? nullptr : res != 0 ? kWrongBytes : kLost;
}
