#pragma once

#include "ZmApi.h"

/// The path of a loaded library, by the handle that the system gave for it, or of the running program for null, into a
/// buffer of `size` bytes. The length; 0 and an empty text if the system does not tell or the path does not fit. On
/// Windows the path has backslashes, elsewhere it is as the system has it.
ZM_API unsigned int ZmGetModuleFileName(void* module, char* buffer, unsigned int size);
