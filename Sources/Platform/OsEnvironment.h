#pragma once

#include <string>

namespace zm {

// Callers pass valid names only: not empty, and without '='.

/// Returns false if there is no such variable.
[[nodiscard]] bool ReadVariable(const char* name, std::string& res);
[[nodiscard]] bool WriteVariable(const char* name, const char* value);
[[nodiscard]] bool RemoveVariable(const char* name);

}  // namespace zm
