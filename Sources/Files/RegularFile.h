#pragma once

#include "ZmFile.h"

namespace zm {

/// As the file's own Open() in that OpenMode, and takes no devices and no pipes in any: so it waits for nobody.
int OpenRegularFile(ZmFile& file, const char* name, int mode);

}  // namespace zm
