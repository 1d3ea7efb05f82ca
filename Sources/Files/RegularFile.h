#pragma once

#include "ZmFile.h"

namespace zm {

/// Like file.Open(), but accepts regular files only, in every mode. Never blocks on a device or a pipe.
int OpenRegularFile(ZmFile& file, const char* name, int mode);

}  // namespace zm
