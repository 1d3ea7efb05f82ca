#pragma once

/// Includes the headers of one family: streams, paths, folders and archives.

#include "RKDirectoryParser.h"
#include "ZmBigFile.h"
#include "ZmCachedFile.h"
#include "ZmFile.h"
#include "ZmFileSystem.h"
#include "ZmMemoryMappedFile.h"
#include "ZmPath.h"
#include "ZmStream.h"
#include "ZmSubFile.h"
