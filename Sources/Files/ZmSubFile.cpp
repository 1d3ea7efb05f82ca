#include "ZmSubFile.h"

ZmSubFile::ZmSubFile() = default;
ZmSubFile::ZmSubFile(const ZmSubFile&) = default;
ZmSubFile& ZmSubFile::operator=(const ZmSubFile&) = default;
ZmSubFile::~ZmSubFile() = default;

void ZmSubFile::Set(ZmFile* parent, unsigned int offset, unsigned int size)
{
    m_Parent = parent;
    m_Offset = offset;
    m_Size = size;
    m_Position = 0;
    Seek(0, START);
}

unsigned int ZmSubFile::Position()
{
    return m_Position;
}

unsigned int ZmSubFile::Size()
{
    return m_Size;
}

int ZmSubFile::IsValid()
{
    return m_Parent != nullptr && m_Parent->IsValid() != 0 && m_Size != 0 &&
           uint64_t(m_Offset) + m_Size <= m_Parent->Size();
}

int ZmSubFile::Seek(int offset, SeekMode mode)
{
    if (mode == START) {
        m_Position = unsigned(offset);
    } else if (mode == END) {
        // Counts backwards from the end, unlike ZmFile (ZmSubFileTest, SeekCountsBackwardsFromTheEnd).
        m_Position = m_Size - unsigned(offset);
    } else {
        m_Position += unsigned(offset);
        return m_Parent != nullptr ? m_Parent->Seek(offset, CURRENT) : 0;
    }
    return m_Parent != nullptr ? m_Parent->Seek(int(m_Offset + m_Position), START) : 0;
}

// Moves the file to this span's position: another user of the file may have moved it.
bool ZmSubFile::MoveParent()
{
    if (m_Parent == nullptr) {
        return false;
    }
    if (m_Position != m_Parent->Position() - m_Offset) {
        m_Parent->Seek(int(m_Offset + m_Position), START);
    }
    return true;
}

unsigned int ZmSubFile::Read(void* buffer, unsigned int size)
{
    const unsigned int read = MoveParent() ? m_Parent->Read(buffer, size) : 0;
    m_Position += read;
    return read;
}

unsigned int ZmSubFile::Write(const void* buffer, unsigned int size)
{
    const unsigned int written = MoveParent() ? m_Parent->Write(buffer, size) : 0;
    m_Position += written;
    return written;
}
