#pragma once

#include <string>

namespace zm {

/// The path of a library, by its handle, or of the running program for null. Empty if the system does not tell.
std::string ModulePath(void* module);

}  // namespace zm
