#include "Configuration/SettingsFiles.h"

#include "Configuration/SettingsText.h"
#include "Files/RegularFile.h"
#include "Platform/OsFileLock.h"
#include "Platform/OsFiles.h"
#include "Platform/OsThread.h"
#include "Platform/OutOfMemory.h"
#include "Platform/Replacement.h"

#include <new>
#include <string.h>

namespace zm {

namespace {

constexpr unsigned kRightToRead = 0x1, kRightToWrite = 0x2, kEveryRight = 0x12000000, kGenericRead = 0x80000000,
                   kGenericWrite = 0x40000000;

bool MakeFoldersOf(const std::string& path)
{
    bool made = true;
    for (size_t slash = path.find('/', 1); made && slash != std::string::npos; slash = path.find('/', slash + 1)) {
        made = MakePrivateFolder(path.substr(0, slash).c_str());
    }
    return made;
}

/// Reads a whole file; a missing file counts as empty, but not one of which the system cannot tell.
bool ReadText(const std::string& path, std::string& res)
{
    ZmFile file;
    if (!OpenRegularFile(file, path.c_str(), ZmFile::READONLY)) {
        return IsMissing(path.c_str());
    }
    res.resize(file.Size());
    return file.IsValid() && file.Read(res.data(), unsigned(res.size())) == res.size();
}

bool WriteText(const char* path, const std::string& text)
{
    ZmFile file;
    const bool written =
        file.Open(path, ZmFile::WRITEONLY) && file.Write(text.data(), unsigned(text.size())) == text.size();
    return file.Close() && written;
}

bool ReplaceText(const std::string& path, const std::string& text)
{
    Replacement replacement;
    return replacement.Begin(path.c_str(), Replacement::Options(Replacement::CLOSEST | Replacement::PRIVATE)) &&
           WriteText(replacement.Path(), text) && replacement.Commit();
}

}  // namespace

SettingsFiles::SettingsFiles(const std::string& folder, const std::string& path, unsigned rights)
    : m_Folder(folder), m_Path(path), m_Reads((rights & (kRightToRead | kGenericRead | kEveryRight)) != 0),
      m_Writes((rights & (kRightToWrite | kGenericWrite | kEveryRight)) != 0)
{
    while (!m_Path.empty() && m_Path.back() == '\\') {
        m_Path.pop_back();
    }
}

SettingsKey* SettingsFiles::Open(const char* path, unsigned rights) const
{
    return UnlessOutOfMemory<SettingsKey*>(nullptr, [&] {
        return new SettingsFiles(m_Folder, m_Path + (m_Path.empty() || *path == 0 ? "" : "\\") + path, rights);
    });
}

bool SettingsFiles::Write(const char* name, const char* value)
{
    return UnlessOutOfMemory(false, [&] {
        const std::string path = m_Folder + SettingsPath(m_Path);
        if (!m_Writes || !MakeFoldersOf(path)) {
            return false;
        }
        const StopDelay delay;  // a terminated thread would keep the file locked
        const FileLock lock((m_Folder + ".lock").c_str());
        std::string old;
        if (!lock.IsHeld() || !ReadText(path, old)) {
            return false;
        }
        const std::string text = WithSetting(old, name, value);
        return text == old || ReplaceText(path, text);
    });
}

int SettingsFiles::Read(const char* name, char* value, int size) const
{
    return UnlessOutOfMemory(-1, [&] {
        std::string text, found;
        if (!m_Reads || !ReadText(m_Folder + SettingsPath(m_Path), text) || !FindSetting(text, name, found) ||
            found.size() >= size_t(size)) {
            return -1;
        }
        memcpy(value, found.c_str(), found.size() + 1);
        return int(found.size() + 1);
    });
}

}  // namespace zm
