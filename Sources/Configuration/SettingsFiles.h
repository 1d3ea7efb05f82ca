#pragma once

#include "Platform/OsSettings.h"

namespace zm {

/// The user's settings on systems without a registry: a file for each key, in the format of SettingsText.h, below one
/// folder. A lock in that folder keeps writers from losing each other's values; readers need none, since a file is
/// replaced in one step.
class SettingsFiles : public SettingsKey {
public:
    /// `folder` ends with a separator; it need not exist. `path` is the key's, relative to the folder.
    SettingsFiles(const std::string& folder, const std::string& path, unsigned rights);

    SettingsKey* Open(const char* path, unsigned rights) const override;
    bool Write(const char* name, const char* value) override;
    int Read(const char* name, char* value, int size) const override;

private:
    std::string m_Folder, m_Path;
    bool m_Reads, m_Writes;
};

}  // namespace zm
