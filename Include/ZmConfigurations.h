#pragma once

/// Includes the headers of one family: configurations and user settings.

#include "ZmConfig.h"
#include "ZmConfiguration.h"
#include "ZmConfigurationEntry.h"
#include "ZmConfigurationSection.h"
