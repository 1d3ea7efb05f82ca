#pragma once

#include "Arguments.h"

class ZmBigFile;

/// Each does one command and returns the exit code; Failure is thrown where nothing was done.
int Create(const Arguments& arguments);
int List(const Arguments& arguments);
int Extract(const Arguments& arguments);
int Add(const Arguments& arguments);
int Remove(const Arguments& arguments);
int Reorder(const Arguments& arguments);
int Verify(const Arguments& arguments);

/// Opens an archive that is there: what only reads makes no file.
void OpenArchive(ZmBigFile& archive, const Arguments& arguments);

/// Whether all bytes of an entry are in the file.
bool IsWhole(ZmBigFile& archive, int position);
