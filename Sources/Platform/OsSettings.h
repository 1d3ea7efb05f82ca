#pragma once

#include <string>

namespace zm {

/// A key of the user's settings: text values with names, and keys below it. Texts are never null.
class SettingsKey {
public:
    SettingsKey() = default;
    virtual ~SettingsKey() = default;
    SettingsKey(const SettingsKey&) = delete;
    SettingsKey& operator=(const SettingsKey&) = delete;

    /// Opens a key below this one and creates it if it is missing. '\' separates levels. `rights` are those of the
    /// Windows registry. Returns null if the key cannot be opened; the caller deletes it.
    virtual SettingsKey* Open(const char* path, unsigned rights) const = 0;

    /// Creates or replaces a value durably. Returns false, with the old value unchanged, if that fails.
    virtual bool Write(const char* name, const char* value) = 0;

    /// Copies the stored bytes of a value, including a stored terminator, and returns their number. Returns -1 if there
    /// is no value of that name, if it has more than `size` bytes, or if it is a text of exactly `size` bytes without a
    /// terminator.
    virtual int Read(const char* name, char* value, int size) const = 0;
};

/// Opens a key below the user's root of the registry, as SettingsKey::Open(). Null where the system has no registry.
[[nodiscard]] SettingsKey* OpenRegistry(const char* path, unsigned rights);

/// The folder for the user's settings files, ending with a separator. Empty if it is unknown or if the system has a
/// registry instead.
[[nodiscard]] std::string SettingsFolder();

/// Creates a folder that only the user may access. Returns true also if it exists.
[[nodiscard]] bool MakePrivateFolder(const char* path);

}  // namespace zm
