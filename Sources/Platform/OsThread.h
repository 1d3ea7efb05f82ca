#pragma once

namespace zm {

/// Gives the calling thread the highest priority that the system grants it and returns what
/// RestoreThreadPriority() needs to take that back. A refusal changes nothing.
int RaiseThreadPriority();
void RestoreThreadPriority(int previous);

/// Whether no other thread can run in this process until the caller starts one. May say no where it is so.
bool IsOnlyThread();

/// Lets other threads run.
void YieldThread();

/// Sleeps for at least that long; signals do not cut it short.
void SleepMilliseconds(unsigned milliseconds);

}  // namespace zm
