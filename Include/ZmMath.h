#pragma once

/// Includes the whole library. Cheap to include: its headers pull in small C headers only.

#include "ZmApi.h"
#include "ZmConfigurations.h"
#include "ZmContainers.h"
#include "ZmFiles.h"
#include "ZmImages.h"
#include "ZmLogging.h"
#include "ZmMathematics.h"
#include "ZmQueries.h"
#include "ZmThreads.h"
#include "ZmVersion.h"
