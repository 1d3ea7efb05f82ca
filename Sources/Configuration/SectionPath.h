#pragma once

#include "ZmConfigurationSection.h"

namespace zm {

/// The section at the end of a chain of names with dots between them, or of one name; null if there is none.
ZmConfigurationSection* FindPath(const ZmConfigurationSection& from, const char* path, bool dots);

/// The same with dots, where missing sections are made; null without memory.
ZmConfigurationSection* CreatePath(ZmConfigurationSection& from, const char* path);

}  // namespace zm
