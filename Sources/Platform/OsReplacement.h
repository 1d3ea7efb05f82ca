#pragma once

#include "Platform/Replacement.h"

namespace zm {

// What Replacement asks of the system.

/// The path with links at its end followed, on systems whose own renaming does not; empty for a circle of links.
std::string PathWithoutLinks(const char* path);

/// Whether a new file may take that place: nothing is there, or a regular file that the caller may write and that, for
/// an exact replacement, has no other name.
bool TakesReplacement(const char* target, Replacement::Options options);

/// Makes an empty file and holds it, so that RemoveUnheldFile() of any process spares it; others may write it. It is
/// like the target where there is one. Null if that fails; `taken` tells whether the name is somebody's.
void* MakeNewFile(const char* path, const char* target, Replacement::Options options, bool& taken);

/// Lets a file of MakeNewFile() go and removes it.
void DiscardNewFile(void* held, const char* path);

/// Brings a file of MakeNewFile() to the disk, gives it the target's name in one step, and lets it go. False, with all
/// as it was and the file still held, if that fails.
bool GiveName(void*& held, const char* path, const char* target);

/// Removes a file of MakeNewFile() whose process has ended.
void RemoveUnheldFile(const char* path);

}  // namespace zm
