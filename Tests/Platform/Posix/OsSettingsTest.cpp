#include "Platform/OsSettings.h"

#include "Platform/OsFiles.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

namespace {

/// A variable of the environment while the object lives; null removes it.
class Variable {
public:
    Variable(const char* name, const char* value) : m_Name(name)
    {
        const char* old = getenv(name);
        m_Had = old != nullptr;
        m_Old = m_Had ? old : "";
        Set(value);
    }
    ~Variable() { Set(m_Had ? m_Old.c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    void Set(const char* value) { value != nullptr ? setenv(m_Name, value, 1) : unsetenv(m_Name); }

    const char* const m_Name;
    bool m_Had;
    std::string m_Old;
};

TEST(OsSettingsTest, TheFolderComesFromTheEnvironmentOrTheUser)
{
    const passwd* user = getpwuid(getuid());
    const std::string ofUser = user != nullptr ? std::string(user->pw_dir) + "/.config/" : "";
    const struct {
        const char *configuration, *home;
        std::string expected;
    } rows[] = {
        {"/a/folder", "/home/of", "/a/folder/"},
        {"relative", "/home/of", "/home/of/.config/"},
        {"", "/home/of", "/home/of/.config/"},
        {nullptr, "/home/of", "/home/of/.config/"},
        {nullptr, "", ofUser},
        {nullptr, nullptr, ofUser},
    };
    for (const auto& row : rows) {
        const Variable configuration("XDG_CONFIG_HOME", row.configuration), home("HOME", row.home);
        EXPECT_EQ(zm::SettingsFolder(), row.expected);
    }
}

TEST(OsSettingsTest, TemporaryFilesGoWhereTheEnvironmentSays)
{
    constexpr const char* kRows[][2] = {{"/a/b", "/a/b/"}, {"/a/b/", "/a/b/"}, {"", "/tmp/"}, {nullptr, "/tmp/"}};
    for (const auto& row : kRows) {
        const Variable folder("TMPDIR", row[0]);
        EXPECT_EQ(zm::TemporaryPath(), row[1]);
    }
}

}  // namespace
