#pragma once

/// Of the calling thread: a nice value on POSIX systems.
int SystemPriority();
