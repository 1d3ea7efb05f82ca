#include "Support/Random.h"
#include "Support/TemporaryFolder.h"
#include "ZmConfig.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

namespace {

constexpr int kNames = 5;

std::string NameOf(int number)
{
    return "name" + std::to_string(number % kNames);
}

/// Long enough for more than one block of a file.
std::string ValueOf(int number)
{
    return std::to_string(number) + ':' + std::string(200, char('a' + number % 26));
}

std::string Read(const char* section, const std::string& name)
{
    ZmConfig settings;
    settings.OpenSection(section, ZmConfig::MODE_READ);
    char value[ZmConfig::kMaxValue] = "";
    settings.ReadStringEntry(name.c_str(), value);
    return value;
}

/// Writes values with growing numbers, and each number to the pipe when its value is written.
[[noreturn]] void WriteForEver(int pipe, int number)
{
    ZmConfig settings;
    settings.OpenSection("Killed", ZmConfig::MODE_WRITE);
    for (;; ++number) {
        settings.WriteStringEntry(NameOf(number).c_str(), ValueOf(number).c_str());
        if (write(pipe, &number, sizeof(number)) != sizeof(number)) {
            _exit(1);
        }
    }
}

TEST(SettingsProcessesTest, AKilledProcessLosesAtMostWhatItWasWriting)
{
    Random random(1);
    int last = 0;
    for (int round = 0; round < 60; ++round) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) {
            WriteForEver(ends[1], last + 1);
        }
        ASSERT_GT(child, 0);
        close(ends[1]);
        ASSERT_EQ(read(ends[0], &last, sizeof(last)), ssize_t(sizeof(last)));
        usleep(useconds_t(random.Int(0, 20000)));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        while (read(ends[0], &last, sizeof(last)) > 0) {
        }
        close(ends[0]);
        for (int number = std::max(last - kNames + 1, 1); number <= last; ++number) {
            const std::string value = Read("Killed", NameOf(number));
            // The process may have been on its way to the next value of that name.
            const bool next = number == last + 1 - kNames && value == ValueOf(last + 1);
            ASSERT_TRUE(value == ValueOf(number) || next) << number << " of " << last << ": " << value;
        }
    }
}

TEST(SettingsProcessesTest, ProcessesThatWriteAtOnceLoseNoValue)
{
    constexpr int kProcesses = 3, kValues = 40;
    pid_t children[kProcesses];
    for (int process = 0; process < kProcesses; ++process) {
        children[process] = fork();
        if (children[process] == 0) {
            ZmConfig settings;
            settings.OpenSection("Shared", ZmConfig::MODE_WRITE);
            for (int i = 0; i < kValues; ++i) {
                settings.WriteStringEntry((std::to_string(process) + '-' + std::to_string(i)).c_str(), "x");
            }
            _exit(0);
        }
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    for (int i = 0; i < kProcesses * kValues; ++i) {
        EXPECT_EQ(Read("Shared", std::to_string(i / kValues) + '-' + std::to_string(i % kValues)), "x") << i;
    }
}

TEST(SettingsProcessesTest, AnyByteButNulMayStandInNamesAndValues)
{
    std::string bytes;
    for (int c = 1; c < 256; ++c) {
        bytes += char(c);
    }
    ZmConfig settings;
    settings.OpenSection((bytes + bytes).c_str(), ZmConfig::MODE_READWRITE);
    settings.WriteStringEntry("before", "1");
    settings.WriteStringEntry(bytes.c_str(), bytes.c_str());
    settings.WriteStringEntry("after", "2");
    EXPECT_EQ(Read((bytes + bytes).c_str(), bytes), bytes);
    EXPECT_EQ(Read((bytes + bytes).c_str(), "before") + Read((bytes + bytes).c_str(), "after"), "12");
    EXPECT_EQ(Read(bytes.c_str(), bytes), "");
}

TEST(SettingsProcessesTest, LinesOfOthersAndLinksStay)
{
    const TemporaryFolder elsewhere;
    const std::string folder = std::string(getenv("XDG_CONFIG_HOME")) + "/Software/Quarnel/UserConfig/";
    std::filesystem::create_directories(folder);
    MakeFile(elsewhere / "file", "# by hand\nName=1");
    std::filesystem::create_symlink(elsewhere / "file", folder + "linked.settings");
    ZmConfig settings;
    settings.OpenSection("Linked", ZmConfig::MODE_READWRITE);
    settings.WriteStringEntry("other", "2");
    settings.WriteStringEntry("name", "3");
    EXPECT_EQ(BytesOf(elsewhere / "file"), "# by hand\nName=3\nother=2\n");
    EXPECT_TRUE(std::filesystem::is_symlink(folder + "linked.settings"));
}

}  // namespace
