#pragma once

#include "ZmConfigurationSection.h"

namespace zm {

/// Finds a section by a name or, with `dots`, by a chain of names separated by dots. Null if there is none.
ZmConfigurationSection* FindPath(const ZmConfigurationSection& from, const char* path, bool dots);

/// The same with dots, creating missing sections. Null if out of memory.
ZmConfigurationSection* CreatePath(ZmConfigurationSection& from, const char* path);

}  // namespace zm
