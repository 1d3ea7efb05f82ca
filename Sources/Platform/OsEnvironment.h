#pragma once

#include <string>

namespace zm {

// Names are valid: not empty, and without '='.

/// False if there is no such variable.
bool ReadVariable(const char* name, std::string& res);
bool WriteVariable(const char* name, const char* value);
bool RemoveVariable(const char* name);

}  // namespace zm
