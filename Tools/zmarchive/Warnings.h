#pragma once

/// Redirects the library's warnings from the log file to the standard error stream.
void HearWarnings();

/// The number of warnings so far.
int WarningCount();
