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
        // If the value did not fit, the length includes the terminator.
        const bool fits = length < res.size() || length == 0;
        res.resize(length);
        if (fits) {
            return true;
        }
    }
}

// The C library keeps a copy of its own for getenv(). It treats an empty value as a removal, so the system is updated
// after it.
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
