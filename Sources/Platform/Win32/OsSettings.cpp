#include "Platform/OsSettings.h"

#include <string.h>
#include <windows.h>

namespace zm {

void* OpenSettings(void* parent, const char* path, unsigned rights)
{
    const HKEY root = parent != nullptr ? static_cast<HKEY>(parent) : HKEY_CURRENT_USER;
    HKEY key = nullptr;
    return RegCreateKeyExA(root, path, 0, nullptr, REG_OPTION_NON_VOLATILE, rights, nullptr, &key, nullptr) ==
                   ERROR_SUCCESS
               ? key
               : nullptr;
}

void CloseSettings(void* key)
{
    if (key != nullptr) {
        RegCloseKey(static_cast<HKEY>(key));
    }
}

bool WriteSetting(void* key, const char* name, const char* value)
{
    return RegSetValueExA(static_cast<HKEY>(key), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                          DWORD(strlen(value) + 1)) == ERROR_SUCCESS;
}

int ReadSetting(void* key, const char* name, char* value, int size)
{
    DWORD type = 0, bytes = DWORD(size);
    const LSTATUS status =
        RegQueryValueExA(static_cast<HKEY>(key), name, nullptr, &type, reinterpret_cast<BYTE*>(value), &bytes);
    // Other programs may have stored any type, and texts without a terminator, for which there must be space.
    const bool isText = type == REG_SZ || type == REG_EXPAND_SZ;
    const bool fits = bytes < DWORD(size) || !isText || value[size - 1] == 0;
    return status == ERROR_SUCCESS && fits ? int(bytes) : -1;
}

}  // namespace zm
