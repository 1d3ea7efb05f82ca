#pragma once

namespace zm {

/// Locks a file, which is created for its owner if missing, until the object is destroyed: against all other objects,
/// in this process or another. A process that ends releases its locks.
class FileLock {
public:
    explicit FileLock(const char* path);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    bool IsHeld() const { return m_File != nullptr; }

private:
    void* m_File;
};

}  // namespace zm
