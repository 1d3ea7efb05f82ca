#pragma once

/// Includes the headers of one family: strings, containers and memory.

#include "XArray.h"
#include "XFixedSizeAllocator.h"
#include "XGUID.h"
#include "XHashFun.h"
#include "XHashTable.h"
#include "XMemory.h"
#include "XString.h"
#include "XStringTokenizer.h"
#include "ZmAligned.h"
#include "ZmAllocator.h"
