#pragma once

#include <string>

/// Of the calling thread, as the system counts: a nice value on POSIX systems.
int SystemPriority();

/// The calling thread's name as the system has it; "?" where it has none.
std::string SystemThreadName();

/// Whether threads can be stopped from outside. POSIX systems do it by a signal that emulators may not have.
bool SystemStopsThreads();
