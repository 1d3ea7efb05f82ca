#pragma once

/// Redirects the library's warnings from the log file to the standard error stream, after the name of the tool.
void HearWarnings(const char* tool);

/// The number of warnings so far.
int WarningCount();
