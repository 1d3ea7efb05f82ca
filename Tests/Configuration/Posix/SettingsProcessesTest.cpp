#include "Configuration/Settings.h"
#include "Support/Random.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

namespace {

constexpr int kNames = 5;
constexpr const char* kNameOf[kNames] = {"a", "b", "c", "d", "e"};

std::string ValueOf(int number)
{
    return std::to_string(number) + ':' + std::string(200, char('a' + number % 26));
}

/// Starts a process that writes values with increasing numbers and reports each number to the pipe once it is written.
pid_t StartWriter(int pipe, int number)
{
    const pid_t child = fork();
    if (child != 0) {
        return child;
    }
    do {
        WriteSetting("Killed", kNameOf[number % kNames], ValueOf(number));
    } while (write(pipe, &number, sizeof(number)) == sizeof(number) && ++number > 0);
    _exit(1);
}

TEST(SettingsProcessesTest, AKilledProcessLosesAtMostWhatItWasWriting)
{
    constexpr int kRounds = 60;
    const pid_t beside = fork();  // writes to the same file at the same time
    if (beside == 0) {
        for (int i = 0; i < kRounds; ++i) {
            WriteSetting("Killed", "beside" + std::to_string(i), "x");
        }
        _exit(0);
    }
    Random random(1);
    int last = 0;
    for (int round = 0; round < kRounds; ++round) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = StartWriter(ends[1], last + 1);
        close(ends[1]);
        ASSERT_EQ(read(ends[0], &last, sizeof(last)), ssize_t(sizeof(last)));
        usleep(useconds_t(random.Int(0, 20000)));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        while (read(ends[0], &last, sizeof(last)) > 0) {
        }
        close(ends[0]);
        for (int number = std::max(last - kNames + 1, 1); number <= last; ++number) {
            const std::string value = ReadSetting("Killed", kNameOf[number % kNames]);
            // The process may already have been writing the next value of that name.
            const bool next = number == last + 1 - kNames && value == ValueOf(last + 1);
            ASSERT_TRUE(value == ValueOf(number) || next) << number << " of " << last << ": " << value;
        }
    }
    waitpid(beside, nullptr, 0);
    for (int i = 0; i < kRounds; ++i) {
        EXPECT_EQ(ReadSetting("Killed", "beside" + std::to_string(i)), "x") << i;
    }
}

TEST(SettingsProcessesTest, AnyByteButNulMayStandInNamesAndValues)
{
    std::string bytes;
    for (int c = 1; c < 256; ++c) {
        bytes += char(c);
    }
    WriteSetting(bytes + bytes, bytes, bytes);
    WriteSetting(bytes + bytes, "after", "x");
    EXPECT_EQ(ReadSetting(bytes + bytes, bytes) + ReadSetting(bytes + bytes, "AFTER"), bytes + 'x');
}

TEST(SettingsProcessesTest, LinesOfOthersAndLinksStay)
{
    const TemporaryFolder elsewhere;
    const std::string folder = std::string(getenv("XDG_CONFIG_HOME")) + "/Software/Quarnel/UserConfig/";
    std::filesystem::create_directories(folder);
    MakeFile(elsewhere / "file", "# by hand\nName=1");
    std::filesystem::create_symlink(elsewhere / "file", folder + "linked.settings");
    WriteSetting("Linked", "other", "2");
    WriteSetting("Linked", "name", "3");
    EXPECT_EQ(BytesOf(elsewhere / "file"), "# by hand\nName=3\nother=2\n");
    std::filesystem::remove(folder + "linked.settings");
}

TEST(SettingsProcessesTest, NothingIsWrittenWithoutTheLock)
{
    const std::string lock = std::string(getenv("XDG_CONFIG_HOME")) + "/Software/Quarnel/UserConfig/.lock";
    WriteSetting("Locked", "name", "old");
    std::filesystem::remove(lock);
    std::filesystem::create_directory(lock);
    WriteSetting("Locked", "name", "new");
    EXPECT_EQ(ReadSetting("Locked", "name"), "old");
    std::filesystem::remove(lock);
}

}  // namespace
