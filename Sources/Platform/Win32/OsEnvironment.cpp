#include "Platform/OsEnvironment.h"

#include <stdlib.h>
#include <windows.h>

namespace zm {

bool ReadVariable(const char* name, std::string& res)
{
    res.clear();
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        const DWORD length = GetEnvironmentVariableA(name, &res[0], DWORD(res.size()));
        if (length == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND) {
            return false;
        }
        // A length that did not fit counts the terminator.
        const bool fits = length < res.size() || length == 0;
        res.resize(length);
        if (fits) {
            return true;
        }
    }
}

// The C library has a copy of its own, which its getenv() reads. It takes an empty value for a removal, and so the
// system is told after it.
bool WriteVariable(const char* name, const char* value)
{
    _putenv_s(name, value);
    return SetEnvironmentVariableA(name, value) != 0;
}

bool RemoveVariable(const char* name)
{
    _putenv_s(name, "");
    return SetEnvironmentVariableA(name, nullptr) != 0 || GetLastError() == ERROR_ENVVAR_NOT_FOUND;
}

}  // namespace zm
