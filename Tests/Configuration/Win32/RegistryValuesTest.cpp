#include "Configuration/Settings.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

TEST(RegistryValuesTest, ValuesOfOthersAreGivenAsTheirBytes)
{
    const struct {
        const char* name;
        DWORD type;
        std::string stored;
        int size;
    } kRows[] = {
        {"number", REG_DWORD, std::string("\1\2\3\4", 4), 4},
        {"bytes", REG_BINARY, std::string("a\0b", 3), 3},
        {"no bytes", REG_BINARY, "", 0},
        {"all that fits", REG_BINARY, std::string(256, 'b'), 256},
        {"too many", REG_BINARY, std::string(257, 'b'), -1},
        {"texts", REG_MULTI_SZ, std::string("a\0b\0\0", 5), 5},
        {"to be expanded", REG_EXPAND_SZ, std::string("%PATH%\0", 7), 7},
        {"a text that fits", REG_SZ, std::string(255, 'x') + '\0', 256},
    };
    HKEY key;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\Quarnel\\UserConfig\\ZmMathTestBytes", 0, nullptr, 0,
                              KEY_WRITE, nullptr, &key, nullptr),
              0);
    ZmConfig settings;
    settings.OpenSection("ZmMathTestBytes", ZmConfig::MODE_READ);
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        RegSetValueExA(key, row.name, 0, row.type, reinterpret_cast<const BYTE*>(row.stored.data()),
                       DWORD(row.stored.size()));
        std::string value(ZmConfig::kMaxValue, '?');
        ASSERT_EQ(settings.ReadStringEntry(row.name, &value[0]), row.size);
        if (row.size >= 0) {
            EXPECT_EQ(value.substr(0, size_t(row.size)), row.stored);
            EXPECT_TRUE(row.size == 256 || value.find('\0') <= size_t(row.size)) << "has an end";
        }
    }
    RegCloseKey(key);
}

}  // namespace
