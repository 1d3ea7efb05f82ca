#pragma once

#include <string>

namespace zm {

// Callers pass valid names only: not empty, and without '='.

/// Returns false if there is no such variable.
bool ReadVariable(const char* name, std::string& res);
bool WriteVariable(const char* name, const char* value);
bool RemoveVariable(const char* name);

}  // namespace zm
