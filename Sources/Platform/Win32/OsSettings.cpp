#include "Platform/OsSettings.h"

#include <new>
#include <string.h>
#include <windows.h>

namespace zm {

namespace {

class RegistryKey : public SettingsKey {
public:
    static SettingsKey* Create(HKEY parent, const char* path, unsigned rights)
    {
        HKEY key = nullptr;
        if (RegCreateKeyExA(parent, path, 0, nullptr, REG_OPTION_NON_VOLATILE, rights, nullptr, &key, nullptr) !=
            ERROR_SUCCESS) {
            return nullptr;
        }
        SettingsKey* res = new (std::nothrow) RegistryKey(key);
        if (res == nullptr) {
            RegCloseKey(key);
        }
        return res;
    }

    ~RegistryKey() override { RegCloseKey(m_Key); }

    SettingsKey* Open(const char* path, unsigned rights) const override { return Create(m_Key, path, rights); }

    bool Write(const char* name, const char* value) override
    {
        return RegSetValueExA(m_Key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value), DWORD(strlen(value) + 1)) ==
               ERROR_SUCCESS;
    }

    int Read(const char* name, char* value, int size) const override
    {
        DWORD type = 0, bytes = DWORD(size);
        const LSTATUS status = RegQueryValueExA(m_Key, name, nullptr, &type, reinterpret_cast<BYTE*>(value), &bytes);
        // Other programs may have stored any type, and texts without a terminator, for which there must be space.
        const bool isText = type == REG_SZ || type == REG_EXPAND_SZ;
        const bool fits = bytes < DWORD(size) || !isText || value[size - 1] == 0;
        return status == ERROR_SUCCESS && fits ? int(bytes) : -1;
    }

private:
    explicit RegistryKey(HKEY key) : m_Key(key) {}

    HKEY m_Key;
};

}  // namespace

SettingsKey* OpenRegistry(const char* path, unsigned rights)
{
    return RegistryKey::Create(HKEY_CURRENT_USER, path, rights);
}

std::string SettingsFolder()
{
    return "";
}

bool MakePrivateFolder(const char* path)
{
    return CreateDirectoryA(path, nullptr) != 0 || GetLastError() == ERROR_ALREADY_EXISTS;
}

}  // namespace zm
