#pragma once

#include "ZmLog.h"

#include <string>

/// Starts logging to tour.log in that folder.
void StartLog(const std::string& folder);

/// Sets the source line of the next message; call PrintMT() on the result.
ZmLog& Info(int line);
ZmLog& Error(int line);
