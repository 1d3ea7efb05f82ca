// Large files in 32-bit programs, too.
#define _FILE_OFFSET_BITS 64

#include "Platform/OsSettings.h"

#include "Platform/OsThread.h"
#include "Platform/Posix/SettingsText.h"
#include "Platform/Replacement.h"

#include <errno.h>
#include <fcntl.h>
#include <pwd.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zm {

namespace {

constexpr unsigned kRightToRead = 0x1, kRightToWrite = 0x2, kEveryRight = 0x12000000, kGenericRead = 0x80000000,
                   kGenericWrite = 0x40000000;

struct Key {
    std::string folder;  ///< contains all keys below the root; ends with a slash
    std::string path;    ///< relative to the folder, with '\' between the levels
    bool reads, writes;

    std::string File() const { return folder + SettingsPath(path); }
};

std::string ConfigurationFolder()
{
    const char* folder = getenv("XDG_CONFIG_HOME");
    if (folder != nullptr && *folder == '/') {  // relative paths must be ignored
        return std::string(folder) + '/';
    }
    const char* home = getenv("HOME");
    if (home == nullptr || *home == 0) {
        const passwd* user = getpwuid(getuid());
        home = user != nullptr ? user->pw_dir : nullptr;
    }
    return home != nullptr ? std::string(home) + "/.config/" : "";
}

bool MakeFolders(const std::string& path)
{
    for (size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
        if (mkdir(path.substr(0, slash).c_str(), 0700) != 0 && errno != EEXIST) {
            return false;
        }
    }
    return true;
}

/// Closes its file when it is destroyed.
class OpenFile {
public:
    OpenFile(const std::string& path, int flags) : m_File(open(path.c_str(), flags | O_CLOEXEC, 0600)) {}
    ~OpenFile()
    {
        if (m_File >= 0) {
            close(m_File);
        }
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool IsOpen() const { return m_File >= 0; }

    /// Locks the file until it is closed. Each opening has its own lock, so that threads exclude each other as well.
    bool Lock() const
    {
        int result = -1;
        do {
            result = m_File >= 0 ? flock(m_File, LOCK_EX) : -1;
        } while (result != 0 && m_File >= 0 && errno == EINTR);
        return result == 0;
    }

    bool ReadAll(std::string& res) const
    {
        char block[4096];
        for (;;) {
            const ssize_t count = read(m_File, block, sizeof(block));
            if (count > 0) {
                res.append(block, size_t(count));
            } else if (count == 0 || errno != EINTR) {
                return count == 0;
            }
        }
    }

    bool WriteAll(const std::string& text) const
    {
        for (size_t done = 0; done < text.size();) {
            const ssize_t count = write(m_File, text.data() + done, text.size() - done);
            if (count < 0 && errno != EINTR) {
                return false;
            }
            done += count > 0 ? size_t(count) : 0;
        }
        return true;
    }

private:
    int m_File;
};

/// Reads a whole file; a missing file counts as empty.
bool ReadFile(const std::string& path, std::string& res)
{
    OpenFile file(path, O_RDONLY);
    return file.IsOpen() ? file.ReadAll(res) : errno == ENOENT;
}

// The caller holds the lock, so there is no other writer.
bool ReplaceText(const std::string& path, const std::string& text)
{
    Replacement replacement;
    return replacement.Begin(path.c_str(), Replacement::Options(Replacement::CLOSEST | Replacement::PRIVATE)) &&
           OpenFile(replacement.Path(), O_WRONLY).WriteAll(text) && replacement.Commit();
}

}  // namespace

void* OpenSettings(void* parent, const char* path, unsigned rights)
{
    const Key* above = static_cast<const Key*>(parent);
    Key key;
    if (above == nullptr) {
        key.folder = ConfigurationFolder();
        if (key.folder.empty()) {
            return nullptr;
        }
        for (const char* c = path; *c != 0; ++c) {
            key.folder += *c == '\\' ? '/' : *c;
        }
        key.folder += '/';
    } else {
        key.folder = above->folder;
        key.path = above->path + (above->path.empty() || *path == 0 ? "" : "\\") + path;
        while (!key.path.empty() && key.path.back() == '\\') {
            key.path.pop_back();
        }
    }
    key.reads = (rights & (kRightToRead | kGenericRead | kEveryRight)) != 0;
    key.writes = (rights & (kRightToWrite | kGenericWrite | kEveryRight)) != 0;
    return new Key(key);
}

void CloseSettings(void* key)
{
    delete static_cast<Key*>(key);
}

bool WriteSetting(void* key, const char* name, const char* value)
{
    const Key& opened = *static_cast<const Key*>(key);
    if (!opened.writes || !MakeFolders(opened.File())) {
        return false;
    }
    const StopDelay delay;  // a terminated thread would keep the file locked
    OpenFile lock(opened.folder + ".lock", O_RDWR | O_CREAT);
    const std::string path = opened.File();
    std::string old;
    if (!lock.Lock() || !ReadFile(path, old)) {
        return false;
    }
    const std::string text = WithSetting(old, name, value);
    return text == old || ReplaceText(path, text);
}

int ReadSetting(void* key, const char* name, char* value, int size)
{
    const Key& opened = *static_cast<const Key*>(key);
    std::string text, found;
    if (!opened.reads || !ReadFile(opened.File(), text) || !FindSetting(text, name, found) ||
        found.size() >= size_t(size)) {
        return -1;
    }
    memcpy(value, found.c_str(), found.size() + 1);
    return int(found.size() + 1);
}

}  // namespace zm
