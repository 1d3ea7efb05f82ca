#include "Platform/OsEnvironment.h"

#include <stdlib.h>

namespace zm {

bool ReadVariable(const char* name, std::string& res)
{
    const char* value = getenv(name);
    if (value == nullptr) {
        return false;
    }
    res = value;
    return true;
}

bool WriteVariable(const char* name, const char* value)
{
    return setenv(name, value, 1) == 0;
}

bool RemoveVariable(const char* name)
{
    return unsetenv(name) == 0;
}

}  // namespace zm
