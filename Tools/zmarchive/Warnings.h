#pragma once

/// From here on the library's warnings go to the standard error instead of a log file.
void HearWarnings();

/// How many there have been.
int WarningCount();
