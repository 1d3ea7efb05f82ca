#include "ZmMemoryMappedFile.h"

#include "Platform/OsFiles.h"

namespace {

ZmMMF_Error ToError(zm::MappedFile::Result result)
{
    switch (result) {
    case zm::MappedFile::MAPPED: return ZmMMF_NoError;
    case zm::MappedFile::NOT_MAPPABLE: return ZmMMF_FileMapping;
    case zm::MappedFile::NOT_VIEWED: return ZmMMF_MapView;
    case zm::MappedFile::NOT_OPENED: break;
    }
    return ZmMMF_FileOpen;
}

}  // namespace

ZmMemoryMappedFile::ZmMemoryMappedFile(const char* path)
{
    if (path == nullptr) {
        return;
    }
    zm::MappedFile mapped;
    m_Error = ToError(zm::MapFile(path, mapped));
    if (mapped.size > UINT32_MAX) {
        zm::UnmapFile(mapped);
        m_Error = ZmMMF_FileMapping;
    }
    m_File = mapped.file;
    m_Mapping = mapped.mapping;
    m_Base = mapped.base;
    m_Size = uint32_t(mapped.size);
}

ZmMemoryMappedFile::~ZmMemoryMappedFile()
{
    zm::MappedFile mapped;
    mapped.file = m_File;
    mapped.mapping = m_Mapping;
    mapped.base = m_Base;
    mapped.size = m_Size;
    zm::UnmapFile(mapped);
    m_Error = ZmMMF_FileOpen;
}
