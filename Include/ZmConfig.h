#pragma once

#include "XString.h"

namespace zm {
class SettingsKey;
}

/// Persistent user settings: texts by name, in sections. On Windows they are stored in the registry, under
/// "Software\Quarnel\UserConfig" of the current user; elsewhere in files under a folder of that name in
/// $XDG_CONFIG_HOME, or in ~/.config if that is not set.
///
///     ZmConfig settings;
///     settings.OpenSection("Viewer", ZmConfig::MODE_READWRITE);
///     settings.WriteStringEntry("Last file", path);
///     settings.CloseSection("Viewer");
///
/// Names of sections and settings are compared ignoring the case of A to Z; '\' in a section name separates levels.
/// Null is treated as empty; the empty section is the root itself. In files, names and values may contain any byte but
/// NUL; the registry stores characters of the system's code page.
///
/// Every written value is visible to the next read in any process. Each write is atomic: a program killed during a
/// write loses that value only, and programs that write at the same time do not lose each other's values. With
/// files a write waits for the disk, which takes some milliseconds. Failures to open and write are not reported. Only
/// one thread at a time may use an object; different threads may use different objects.
class ZmConfig {
public:
    /// Access to a section: the registry's access rights, of which files distinguish only reading and writing.
    enum Mode : unsigned int {
        MODE_READ = 0x20019,
        MODE_WRITE = 0x20006,
        MODE_READWRITE = MODE_READ | MODE_WRITE
    };

    /// Size in bytes of the longest value that can be read, including the terminator.
    static constexpr int kMaxValue = 256;

    ZM_API ZmConfig();

    /// Settings of an application of its own: under "Software\" and the name in the registry of the current user, or in
    /// a folder of that name in $XDG_CONFIG_HOME or ~/.config. '\' separates levels, as in "Maker\Game". Nothing is
    /// stored under null, or a name with '/' or with a level that is empty, "." or "..".
    ZM_API explicit ZmConfig(const char* application);
    ZM_API ~ZmConfig();
    ZmConfig(const ZmConfig&) = delete;
    ZmConfig& operator=(const ZmConfig&) = delete;

    /// Opens a section, creating it if it is missing. Closes the section that was open.
    ZM_API void OpenSection(const char* name, Mode mode);

    /// Closes the open section, whatever the name.
    ZM_API void CloseSection(const char* name);

    /// Writes a value. It may have any length, but see kMaxValue for reading.
    ZM_API void WriteStringEntry(const char* name, const char* value);

    /// Copies a value to `value`, which must have space for kMaxValue bytes. Returns the size in bytes, including the
    /// terminator. Returns -1 and leaves `value` unchanged if there is no such value, if it is too long or may not be
    /// read, or if no section is open. Registry values stored by other programs are returned unchanged, whatever their
    /// type; if they lack a terminator and have fewer than kMaxValue bytes, one is added that is not counted.
    ZM_API int ReadStringEntry(const char* name, char* value) const;

    /// Writes a value, as WriteStringEntry() does. Returns 1 once it is stored, or 0.
    ZM_API int WriteText(const char* name, const char* value);

    /// Reads a value of any length that an XString holds. Returns 1, or 0 with `res` unchanged if there is none or it
    /// may not be read.
    ZM_API int ReadText(const char* name, XString& res) const;

private:
    zm::SettingsKey* m_Root;
    zm::SettingsKey* m_Section;
};
