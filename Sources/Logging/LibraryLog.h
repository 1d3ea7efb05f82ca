#pragma once

#include "ZmLog.h"

namespace zm {

/// The id of the library's own module; set when the library is loaded.
extern int g_LibraryModule;

/// Prints a warning of the library itself. Thread-safe. `file` is the name of the source file without extension.
void Warn(int line, const char* file, const char* format, ...) __attribute__((__format__(printf, 3, 4)));

// Source lines of messages that programs know by file and line, to filter the log or to compare with. Not __LINE__,
// which changes when code moves (ZmCachedFileSmallTest, WhatHasNoCachedFormIsDoneWithAWarningEachTime) (ZmBigFileTest,
// AFileThatIsMissingLeavesAnEmptyEntryOrZeros) (ZmBigFileTest, IndexListsReorderAndLoseALastCharacter).
constexpr int kLineOfGetString = 201;
constexpr int kLineOfFlush = 208;
constexpr int kLineOfReadItems = 215;
constexpr int kLineOfMissingFile = 337;
constexpr int kLineOfUnknownEntry = 602;

}  // namespace zm
