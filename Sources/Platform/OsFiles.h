#pragma once

#include <stdio.h>

namespace zm {

/// fopen() for paths of either platform: both separators are understood. Null if it fails.
FILE* OpenFile(const char* path, const char* mode);

}  // namespace zm
