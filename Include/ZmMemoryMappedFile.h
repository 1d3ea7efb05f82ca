#pragma once

#include "ZmApi.h"

#include <stdint.h>

/// Result of mapping a file.
enum ZmMMF_Error {
    ZmMMF_NoError = 0,      ///< mapped
    ZmMMF_FileOpen = 1,     ///< the file is missing, unreadable, a folder, a device or a pipe
    ZmMMF_FileMapping = 2,  ///< the file is empty, for example
    ZmMMF_MapView = 3       ///< not enough address space, for example
};

/// Maps a whole file into memory for reading, as long as the object lives. The file must not be truncated meanwhile.
/// Any number of threads may read the bytes.
class ZmMemoryMappedFile {
public:
    /// Maps the file. Null is treated as a missing file.
    ZM_API explicit ZmMemoryMappedFile(const char* path);
    ZM_API ~ZmMemoryMappedFile();
    ZmMemoryMappedFile(const ZmMemoryMappedFile&) = delete;
    ZmMemoryMappedFile& operator=(const ZmMemoryMappedFile&) = delete;

    /// Returns whether the file is mapped, or which step failed.
    ZmMMF_Error GetErrorType() const { return m_Error; }

    /// The bytes and their number; null and 0 after an error. Files of 4 GiB and more are refused with
    /// ZmMMF_FileMapping.
    const void* GetBase() const { return m_Base; }
    uint32_t GetSize() const { return m_Size; }

private:
    void* m_File = nullptr;
    void* m_Mapping = nullptr;
    void* m_Base = nullptr;
    uint32_t m_Size = 0;
    ZmMMF_Error m_Error = ZmMMF_FileOpen;
};
