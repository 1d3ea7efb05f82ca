#include "Support/TemporaryFolder.h"

#include <stdlib.h>

namespace {

// The tests' settings lie in a folder of their own and not among the user's.
const TemporaryFolder g_Folder;
[[maybe_unused]] const int g_Set = setenv("XDG_CONFIG_HOME", g_Folder.Path().c_str(), 1);

}  // namespace
