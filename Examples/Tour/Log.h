#pragma once

#include "ZmLog.h"

#include <string>

/// From here on the tour writes what it does to tour.log in that folder.
void StartLog(const std::string& folder);

/// Where the next message comes from; to be followed by PrintMT().
ZmLog& Info(int line);
ZmLog& Error(int line);
