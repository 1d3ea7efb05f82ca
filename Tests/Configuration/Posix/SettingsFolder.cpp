// The tests' settings lie in a folder of their own and not among the user's.

#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <memory>

namespace {

class SettingsFolder : public testing::Environment {
public:
    void SetUp() override
    {
        m_Folder = std::make_unique<TemporaryFolder>();
        setenv("XDG_CONFIG_HOME", m_Folder->Path().c_str(), 1);
    }
    void TearDown() override { m_Folder.reset(); }

private:
    std::unique_ptr<TemporaryFolder> m_Folder;
};

[[maybe_unused]] const testing::Environment* const g_Folder =
    testing::AddGlobalTestEnvironment(new SettingsFolder);  // GoogleTest deletes it

}  // namespace
