#pragma once

namespace zm {

/// A recursive lock of the operating system, in a block of its own; null without memory for it.
void* NewLock();
/// Frees the lock, which nobody holds; null does nothing.
void DeleteLock(void* lock);
void EnterLock(void* lock);
/// False, at once, while another thread holds the lock.
bool TryEnterLock(void* lock);
void LeaveLock(void* lock);

/// The same for a lock of the library itself: the thread is not stopped (StopThread()) while it is inside.
/// @{
void EnterOwnLock(void* lock);
void LeaveOwnLock(void* lock);
/// @}

}  // namespace zm
