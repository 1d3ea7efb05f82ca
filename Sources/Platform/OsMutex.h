#pragma once

namespace zm {

/// Creates a recursive lock of the operating system. Returns null if out of memory.
[[nodiscard]] void* NewLock();
/// Frees a lock, which must not be held. Null is ignored.
void DeleteLock(void* lock);
void EnterLock(void* lock);
/// Returns false immediately if another thread holds the lock.
[[nodiscard]] bool TryEnterLock(void* lock);
void LeaveLock(void* lock);

/// The same for a lock of the library itself: StopThread() takes effect only after the thread has left it.
/// @{
void EnterOwnLock(void* lock);
void LeaveOwnLock(void* lock);
/// @}

}  // namespace zm
