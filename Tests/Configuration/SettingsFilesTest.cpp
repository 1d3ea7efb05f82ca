#include "Configuration/SettingsFiles.h"

#include "Platform/OsFileLock.h"
#include "Support/TemporaryFolder.h"
#include "ZmConfig.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

namespace fs = std::filesystem;

namespace {

class SettingsFilesTest : public testing::Test {
protected:
    zm::SettingsFiles KeyOf(const std::string& path, unsigned rights = ZmConfig::MODE_READWRITE) const
    {
        return {m_Folder / "below/settings/", path, rights};
    }

    /// A value as a new object reads it.
    std::string Read(const std::string& path, const std::string& name) const
    {
        char value[1000];
        const int size = KeyOf(path).Read(name.c_str(), value, sizeof(value));
        return size > 0 ? std::string(value, size_t(size - 1)) : "none";
    }

    const TemporaryFolder m_Folder;
};

/// Runs the function on several threads, with their numbers.
template <class Function>
void OnThreads(int count, Function function)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back(function, i);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(SettingsFilesTest, WhatOneObjectWritesAnotherReads)
{
    const struct {
        std::string path, name, value;
    } kRows[] = {
        {"Section", "name", "value"},
        {"Section\\Below", "name", "another"},
        {"", "name", "of the root"},
        {"Section", "a = b % c", " = \t%41%\n\r "},
        {"Q: <*?|\"> \xc3\xa4.", "\xc3\xa4\x01", std::string(900, '\x02')},
        {std::string(40, '/'), "long", "path"},
    };
    for (const auto& row : kRows) {
        EXPECT_TRUE(KeyOf(row.path).Write(row.name.c_str(), "old")) << row.path;
        EXPECT_TRUE(KeyOf(row.path).Write(row.name.c_str(), row.value.c_str())) << row.path;
        EXPECT_TRUE(KeyOf(row.path).Write(row.name.c_str(), row.value.c_str())) << row.path << ", as it is";
    }
    for (const auto& row : kRows) {
        EXPECT_EQ(Read(row.path, row.name), row.value) << row.path;
    }
    EXPECT_EQ(Read("SECTION", "NAME"), "value") << "case does not matter";
    const std::unique_ptr<zm::SettingsKey> below(KeyOf("Section\\").Open("Below", ZmConfig::MODE_READ));
    char value[8];
    EXPECT_EQ(below->Read("name", value, sizeof(value)), 8);
    EXPECT_STREQ(value, "another");
    EXPECT_EQ(below->Read("name", value, 7), -1);
    EXPECT_FALSE(below->Write("name", "without the right"));
    EXPECT_EQ(KeyOf("Section", ZmConfig::MODE_WRITE).Read("name", value, 8), -1);
}

TEST_F(SettingsFilesTest, OnlyWritingMakesFolders)
{
    EXPECT_EQ(Read("Section", "name"), "none");
    EXPECT_EQ(m_Folder.Files().size(), 0u);
    EXPECT_TRUE(KeyOf("Section").Write("name", "value"));
    EXPECT_EQ(Read("Section", "name"), "value");
    MakeFile(m_Folder / "file");
    EXPECT_FALSE(zm::SettingsFiles(m_Folder / "file/", "Section", ZmConfig::MODE_WRITE).Write("name", "value"));
}

TEST_F(SettingsFilesTest, ThreadsLoseNoValue)
{
    constexpr int kThreads = 4, kValues = 10;
    OnThreads(kThreads, [this](int thread) {
        for (int i = 0; i < kValues; ++i) {
            const std::string name = std::to_string(thread) + '.' + std::to_string(i);
            EXPECT_TRUE(KeyOf("Section").Write(name.c_str(), name.c_str())) << name;
        }
    });
    for (int i = 0; i < kThreads * kValues; ++i) {
        const std::string name = std::to_string(i / kValues) + '.' + std::to_string(i % kValues);
        EXPECT_EQ(Read("Section", name), name);
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(m_Folder / "below/settings"), {}), 2) << "values and lock";
}

TEST_F(SettingsFilesTest, OnlyOneThreadHoldsTheLock)
{
    const std::string path = m_Folder / "lock";
    std::atomic<int> holders{0}, most{0};
    OnThreads(4, [&](int) {
        for (int i = 0; i < 20; ++i) {
            const zm::FileLock lock(path.c_str());
            EXPECT_TRUE(lock.IsHeld());
            most = std::max<int>(most, ++holders);
            std::this_thread::yield();
            --holders;
        }
    });
    EXPECT_EQ(most, 1);
    EXPECT_FALSE(zm::FileLock((m_Folder / "no/such/folder").c_str()).IsHeld());
}

TEST_F(SettingsFilesTest, PrivateFoldersMayExist)
{
    const std::string path = m_Folder / "private";
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(zm::MakePrivateFolder(path.c_str()));
        EXPECT_TRUE(fs::is_directory(path));
    }
    EXPECT_FALSE(zm::MakePrivateFolder((m_Folder / "no/such/folder").c_str()));
}

}  // namespace
