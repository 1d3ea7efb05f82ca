#pragma once

#include "ZmApi.h"

#include <stdint.h>

/// How far the mapping of a file came.
enum ZmMMF_Error {
    ZmMMF_NoError = 0,      ///< mapped
    ZmMMF_FileOpen = 1,     ///< no such file, or it may not be read, or it is a folder, a device or a pipe
    ZmMMF_FileMapping = 2,  ///< an empty file, for example
    ZmMMF_MapView = 3       ///< no room for it among the addresses, for example
};

/// A whole file in memory, to be read, while the object lives. The file must not be made shorter meanwhile.
/// Any threads may read the bytes.
class ZmMemoryMappedFile {
public:
    /// Null fails as a missing file does.
    ZM_API explicit ZmMemoryMappedFile(const char* path);
    ZM_API ~ZmMemoryMappedFile();
    ZmMemoryMappedFile(const ZmMemoryMappedFile&) = delete;
    ZmMemoryMappedFile& operator=(const ZmMemoryMappedFile&) = delete;

    /// Whether the file is mapped, or what failed.
    ZmMMF_Error GetErrorType() const { return m_Error; }

    /// The bytes, and their number: null and 0 after an error. A file of 4 GiB and more is refused with
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
