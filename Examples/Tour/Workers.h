#pragma once

#include <functional>

/// Work that many threads share: does `work(worker, item)` once for each item from 0 to `count` - 1, on as many threads
/// as `threads` says, or fewer if the system has no more. A thread keeps its number, from 0 to `threads` - 1, so that
/// `worker` can choose a buffer that is its own. Which thread gets which item is left to chance. Returns when all is
/// done; what the work throws is thrown here.
void ShareOut(int threads, int count, const std::function<void(int worker, int item)>& work);

/// Threads that can run at once on this machine, at least 1.
int ProcessorCount();
