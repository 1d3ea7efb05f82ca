#pragma once

#include "Arguments.h"

#include <cstddef>
#include <cstdint>
#include <functional>

class ZmBigFile;

/// Each function runs one command and returns the exit code. Throws Failure if nothing was done.
int Create(const Arguments& arguments);
int List(const Arguments& arguments);
int Extract(const Arguments& arguments);
int Add(const Arguments& arguments);
int Remove(const Arguments& arguments);
int Reorder(const Arguments& arguments);
int Verify(const Arguments& arguments);

/// Opens an existing archive; never creates a file.
void OpenArchive(ZmBigFile& archive, const Arguments& arguments);

uint64_t TotalSize(const ZmBigFile& archive);

/// Hands the bytes of an entry over in pieces. Throws Failure if they cannot be read.
void ReadEntry(ZmBigFile& archive, int position, const std::function<void(const char* bytes, size_t size)>& take);

/// Whether the file contains all bytes of an entry.
bool IsWhole(ZmBigFile& archive, int position);
