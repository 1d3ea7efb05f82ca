#pragma once

#include <string>

namespace zm {

/// The path of a library, by its handle, or of the running program for null. Empty if the system does not tell.
std::string ModulePath(void* module);

/// Whether this process is ending and the system has ended all threads but this one: what they held stays held.
bool OtherThreadsAreEnded();

}  // namespace zm
