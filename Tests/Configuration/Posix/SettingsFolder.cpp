#include "Support/TemporaryFolder.h"

#include <stdlib.h>

namespace {

// Keeps the tests' settings in a temporary folder, away from the user's.
const TemporaryFolder g_Folder;
[[maybe_unused]] const int g_Set = setenv("XDG_CONFIG_HOME", g_Folder.Path().c_str(), 1);

}  // namespace
