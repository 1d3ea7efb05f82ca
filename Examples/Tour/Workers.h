#pragma once

#include <functional>

/// Calls work(worker, item) once for each item from 0 to `count` - 1, on `threads` threads, or fewer if the system
/// cannot create more. Each thread has a fixed number `worker` from 0 to `threads` - 1, for example to choose a buffer
/// of its own. Which thread gets which item is not determined. Returns when all items are done; rethrows what the work
/// throws.
void ShareOut(int threads, int count, const std::function<void(int worker, int item)>& work);

/// The number of threads that this machine can run at once, at least 1.
int ProcessorCount();
