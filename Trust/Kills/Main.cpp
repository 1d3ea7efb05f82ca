// Kills processes at random moments while they save files, and looks after each kill at what they leave: every file old
// or new and whole, every line of the log that was reported as written, and never more than one unfinished file.
//
//     ZmKills <zmarchive> [kills [name]]    that many kills of each kind of process; kinds whose names contain the text

#include "Configuration/Settings.h"
#include "Files/ArchiveBytes.h"
#include "Support/Random.h"
#include "Support/SilentLog.h"
#include "Support/TemporaryFolder.h"
#include "ZmMath.h"

#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>

namespace fs = std::filesystem;

namespace {

/// A kind of process. Each works on version after version of one file.
struct Victim {
    const char* name;
    void (*prepare)(int version);  ///< in the parent, before a process starts with that version
    bool (*work)(int version);     ///< in the process; false if it failed, which it must not
    bool (*isThere)(int version);  ///< whether the version is what lies in the folder, whole
    bool startsAnew;               ///< each process starts with version 1
    bool worksOnce;                ///< the process ends after one version
};

std::string g_Tool;

std::string ContentsOf(int version)
{
    return std::string(size_t(20000 + version % 7 * 1000), char('a' + version % 26)) + std::to_string(version);
}

void PrepareNothing(int) {}

// Archives.

bool SaveArchive(int version)
{
    const std::string bytes = ContentsOf(version);
    ZmBigFile archive;
    return archive.Open("archive", 1) && (version == 1 || archive.Remove("a")) &&
           archive.Append("a", bytes.data(), unsigned(bytes.size())) && archive.Save(nullptr, nullptr);
}

bool IsArchive(int version)
{
    const std::string bytes = BytesOf("archive");
    return version == 0 ? bytes.empty() : bytes == ArchiveBytes({{"a", ContentsOf(version)}});
}

// Configurations and settings.

constexpr int kEntries = 200;

bool SaveConfiguration(int version)
{
    ZmConfiguration tree(0);
    bool done = true;
    for (int i = 0; done && i < kEntries; ++i) {
        done = tree.AddEntry(nullptr, std::to_string(i).c_str(), version) != 0;
    }
    return done && tree.SaveToFile("configuration");
}

bool IsConfiguration(int version)
{
    std::string text;
    for (int i = 0; version != 0 && i < kEntries; ++i) {
        text += std::to_string(i) + " = " + std::to_string(version) + '\n';
    }
    return BytesOf("configuration") == text;
}

bool WriteSettings(int version)
{
    WriteSetting("Killed", version % 2 == 0 ? "even" : "odd", std::to_string(version));
    return true;
}

bool AreSettings(int version)
{
    const auto valueOf = [](int number) { return number > 0 ? std::to_string(number) : ""; };
    const int even = version / 2 * 2, odd = (version + 1) / 2 * 2 - 1;
    return ReadSetting("Killed", "even") == valueOf(even) && ReadSetting("Killed", "odd") == valueOf(odd);
}

// The log.

void RemoveLog(int)
{
    fs::remove("log.log");
}

bool WriteLine(int version)
{
    static const int module = [] {
        ZmLog& log = ZmLog::GetLog();
        log.RegisterListenerFactory(ZmFileListener::m_Guid, ZmFileListener::ListenerFactory);
        const int res = log.RegisterModule("log");
        ZmLogListener* listener = log.RegisterListener(ZmFileListener::m_Guid, "log", res);
        listener->SetTimeFormat(ZmLogListener::TIME_NONE);
        static_cast<ZmFileListener*>(listener)->SetDirectory("./");
        return res;
    }();
    ZmLog::GetLog().SetInformationMT(module, ZmLog::LEVEL_INFO, 1, "file").PrintMT("number %d.", version);
    return true;
}

// The line after the last reported one may be missing, cut or whole.
bool HasLines(int version)
{
    const std::string text = BytesOf("log.log");
    size_t at = 0;
    for (int i = 1; i <= version; ++i) {
        at = text.find("number " + std::to_string(i) + ".\n", at);
        if (at == std::string::npos) {
            return false;
        }
    }
    return std::count(text.begin(), text.end(), '\n') <= version + 1;
}

// The archive tool.

bool RunTool(std::vector<const char*> arguments)
{
    arguments.insert(arguments.begin(), g_Tool.c_str());
    arguments.push_back(nullptr);
    execv(g_Tool.c_str(), const_cast<char**>(arguments.data()));
    return false;
}

void MakeInput(int version)
{
    fs::create_directory("in");
    MakeFile("in/a", ContentsOf(version));
    if (version == 1) {
        MakeFile("archive", ArchiveBytes({}));
    }
}

bool CreateWithTool(int)
{
    return RunTool({"create", "--force", "--quiet", "archive", "in"});
}

bool AddWithTool(int)
{
    return RunTool({"add", "--replace", "--quiet", "archive", "in"});
}

bool IsToolsArchive(int version)
{
    return version == 0 ? BytesOf("archive") == ArchiveBytes({}) : IsArchive(version);
}

void MakeArchive(int version)
{
    // The user's part: an extraction does not remove what an earlier one has left.
    fs::create_directory("out");
    for (const auto& entry : fs::directory_iterator("out")) {
        if (entry.path().extension() == ".tmp") {
            fs::remove(entry.path());
        }
    }
    MakeFile("archive", ArchiveBytes({{"a", ContentsOf(version)}}));
}

bool ExtractWithTool(int)
{
    return RunTool({"extract", "--force", "--quiet", "--to", "out", "archive"});
}

bool IsExtracted(int version)
{
    return version == 0 ? !fs::exists("out/a") : BytesOf("out/a") == ContentsOf(version);
}

const Victim kVictims[] = {
    {"archive", PrepareNothing, SaveArchive, IsArchive, false, false},
    {"configuration", PrepareNothing, SaveConfiguration, IsConfiguration, false, false},
    {"settings", PrepareNothing, WriteSettings, AreSettings, false, false},
    {"log", RemoveLog, WriteLine, HasLines, true, false},
    {"tool creates", MakeInput, CreateWithTool, IsToolsArchive, false, true},
    {"tool adds", MakeInput, AddWithTool, IsToolsArchive, false, true},
    {"tool extracts", MakeArchive, ExtractWithTool, IsExtracted, false, true},
};

int UnfinishedFiles()
{
    int count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(".")) {
        count += entry.path().extension() == ".tmp";
    }
    return count;
}

/// The last version that a process has reported; shared with it.
std::atomic<int>* g_Done = nullptr;

pid_t Start(const Victim& victim)
{
    if (victim.startsAnew) {
        *g_Done = 0;
    }
    victim.prepare(*g_Done + 1);
    const pid_t child = fork();
    if (child != 0) {
        return child;
    }
    while (victim.work(*g_Done + 1)) {
        ++*g_Done;
    }
    _exit(1);
}

/// Microseconds that a version takes, from the start of its process.
int DurationOf(const Victim& victim)
{
    constexpr int kRuns = 20;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < kRuns; ++i) {
        const pid_t child = Start(victim);
        const int before = *g_Done;
        while (!victim.worksOnce && *g_Done == before) {
            usleep(10);
        }
        if (!victim.worksOnce) {
            kill(child, SIGKILL);
        }
        waitpid(child, nullptr, 0);
        *g_Done += victim.worksOnce || victim.isThere(*g_Done + 1);
    }
    const std::chrono::duration<double, std::micro> passed = std::chrono::steady_clock::now() - start;
    return int(passed.count()) / kRuns;
}

/// Kills one process and returns what is wrong then, or null.
const char* KillOne(const Victim& victim, int microseconds)
{
    const pid_t child = Start(victim);
    usleep(useconds_t(microseconds));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status)) {
        if (!victim.worksOnce || WEXITSTATUS(status) != 0) {
            return "the process has failed";
        }
        *g_Done += 1;
    }
    if (!victim.isThere(*g_Done)) {
        if (WIFEXITED(status) || victim.startsAnew || !victim.isThere(*g_Done + 1)) {
            return "neither the old nor the new version";
        }
        *g_Done += 1;
    }
    return UnfinishedFiles() > 1 ? "unfinished files stay" : nullptr;
}

bool Run(const Victim& victim, int kills)
{
    const TemporaryFolder folder(TemporaryFolder::IN_MEMORY);  // a kill finds a process that waits for a disk too often
    fs::current_path(folder.Path());
    setenv("XDG_CONFIG_HOME", folder.Path().c_str(), 1);
    *g_Done = 0;
    const int duration = DurationOf(victim);
    Random random(1);
    int unfinished = 0;
    const char* wrong = nullptr;
    int count = 0;
    for (; wrong == nullptr && count < kills; ++count) {
        wrong = KillOne(victim, random.Int(0, duration + duration / 2));
        unfinished += UnfinishedFiles();
    }
    printf("%s: %d kills, %d of them left an unfinished file; %s\n", victim.name, count, unfinished,
           wrong != nullptr ? wrong : "nothing wrong");
    fflush(stdout);
    fs::current_path("/");
    return wrong == nullptr;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        puts("ZmKills <zmarchive> [kills [name]]");
        return 2;
    }
    g_Tool = fs::absolute(argv[1]).string();
    const int kills = argc > 2 ? atoi(argv[2]) : 10000;
    SilenceLog();
    g_Done = static_cast<std::atomic<int>*>(
        mmap(nullptr, sizeof(*g_Done), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    bool right = true;
    for (const Victim& victim : kVictims) {
        if (argc <= 3 || strstr(victim.name, argv[3]) != nullptr) {
            right = Run(victim, kills) && right;
        }
    }
    return right ? 0 : 1;
}
