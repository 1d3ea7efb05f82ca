#pragma once

#include "Support/TemporaryFolder.h"

#include <unistd.h>

#include <string>

// What the scenarios share: the contents of their files, the place for what they read, and their checks. Under the
// faults the scenarios themselves allocate nothing.

constexpr char kWrongBytes[] = "wrong bytes", kLost[] = "old file lost", kUndone[] = "success without effect",
               kPartial[] = "success in part";

inline const std::string kLarge(70000, 'b'), kOther(50000, 'd');

/// A string of this length has a block of its own: shorter ones share pages, which rarely run out.
inline const std::string kLongName(200, 'n');

inline char g_Bytes[100000];

inline void Nothing() {}

inline const char* Always(int)
{
    return nullptr;
}

/// Gives the file to another group and perhaps another user, as only the superuser may: for others it stays as it is.
inline void GiveAway(const char* path, uid_t user = uid_t(-1))
{
    [[maybe_unused]] const int given = chown(path, user, 2345);
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
