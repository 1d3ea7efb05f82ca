#pragma once

#include "Platform/Replacement.h"

namespace zm {

// The system calls of Replacement.

/// Whether GiveName() takes one step also where the target is open. Else it may take several, and a process that is
/// killed between them leaves no target.
extern const bool kReplacesOpenFiles;

/// The path of the file to replace, in the system's form, with links at its end followed where renaming would replace
/// the link. Empty if there is none, as for a circle of links.
[[nodiscard]] std::string ReplacedPath(const char* path);

/// Whether the file may be replaced: it does not exist, or it is a regular file that the caller may write and, for an
/// exact replacement, has no other name.
[[nodiscard]] bool TakesReplacement(const char* target, Replacement::Options options);

/// Creates an empty file with the target's owner and permissions, and holds it: RemoveUnheldFile() of any process
/// leaves it alone, while others may open and write it. Returns null on failure; `taken` is then set if the name was in
/// use and another one should be tried.
[[nodiscard]] void* MakeNewFile(const char* path, const char* target, Replacement::Options options, bool& taken);

/// Releases a file of MakeNewFile() and removes it.
void DiscardNewFile(void* held, const char* path);

/// Writes a file of MakeNewFile() to the disk, renames it to the target in one step and releases it: `held` is null
/// then. On failure returns false; nothing has changed and the file is still held.
[[nodiscard]] bool GiveName(void*& held, const char* path, const char* target);

/// Whether the last failure of the functions above was one of resources or of the device, and not of rights or kind.
[[nodiscard]] bool SystemFailed();

/// Removes a file of MakeNewFile() if the process that created it has ended.
void RemoveUnheldFile(const char* path);

}  // namespace zm
