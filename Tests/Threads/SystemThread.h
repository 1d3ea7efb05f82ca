#pragma once

#include <string>

/// The calling thread's priority in the system's units: a nice value on POSIX systems.
int SystemPriority();

/// The calling thread's name as the system reports it; "?" if it has none.
std::string SystemThreadName();

/// Whether threads can be stopped from outside. POSIX systems do it by a signal that emulators may not have.
bool SystemStopsThreads();
