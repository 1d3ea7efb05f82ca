#pragma once

#include "ZmApi.h"

/// Settings of the user, which outlive the program: texts by name, in sections. On Windows they lie in the registry,
/// under "Software\Quarnel\UserConfig" of the current user; elsewhere in files of that folder in $XDG_CONFIG_HOME, or
/// in ~/.config without it.
///
///     ZmConfig settings;
///     settings.OpenSection("Viewer", ZmConfig::MODE_READWRITE);
///     settings.WriteStringEntry("Last file", path);
///     settings.CloseSection("Viewer");
///
/// Names of sections and settings are compared without regard to the case of A to Z, and '\' in the name of a section
/// separates levels. Null reads as empty; the empty section is the root itself. In files any byte but NUL may stand in
/// names and values; the registry holds characters of the system's code page.
///
/// What has been written the next reading sees, in every process. Each writing is one step: a program that is killed in
/// the middle of it loses that value and no other, and programs that write at once lose none of their values. In files
/// it waits for the disk, so that it costs some milliseconds. Failures to open and to write are not reported. One
/// object belongs to one thread at a time; several may work in different ones.
class ZmConfig {
public:
    /// What may be done in a section: the registry's access rights, of which files know reading and writing.
    enum Mode : unsigned int {
        MODE_READ = 0x20019,
        MODE_WRITE = 0x20006,
        MODE_READWRITE = MODE_READ | MODE_WRITE
    };

    /// Bytes of the longest value that is read, with its terminator.
    static constexpr int kMaxValue = 256;

    ZM_API ZmConfig();
    ZM_API ~ZmConfig();
    ZmConfig(const ZmConfig&) = delete;
    ZmConfig& operator=(const ZmConfig&) = delete;

    /// Opens a section, and makes it if it is missing; the one that was open is closed.
    ZM_API void OpenSection(const char* name, Mode mode);

    /// Closes the section that is open, whatever the name.
    ZM_API void CloseSection(const char* name);

    /// Values of any length can be written, but see kMaxValue.
    ZM_API void WriteStringEntry(const char* name, const char* value);

    /// Copies a value to `value`, which has room for kMaxValue bytes, and returns its bytes with the terminator. -1,
    /// and `value` stays as it is, if there is no such value, if it is too long or may not be read, or if no section is
    /// open. What others have stored in the registry is given as it is, whatever its type; behind bytes without a
    /// terminator stands one that is not counted, if there are fewer than kMaxValue.
    ZM_API int ReadStringEntry(const char* name, char* value) const;

private:
    void* m_Root;
    void* m_Section;
};
