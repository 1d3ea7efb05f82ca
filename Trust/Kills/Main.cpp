// Kills processes at random moments while they save files, and looks after each kill at what they leave: every file old
// or new and whole, every line of the log that was reported as written, and never more than one unfinished file.
//
//     ZmKills <zmarchive> [kills [name]]    that many kills of each kind of process; kinds whose names contain the text
//
// A process that uses the library says when it is ready, and is killed at a random moment after that. The archive tool
// says nothing: it is killed no sooner than its shortest start takes.

#include "Configuration/Settings.h"
#include "Files/ArchiveBytes.h"
#include "Kills/Process.h"
#include "Support/Random.h"
#include "Support/SilentLog.h"
#include "Support/TemporaryFolder.h"
#include "ZmMath.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <thread>

namespace fs = std::filesystem;

namespace {

/// A kind of process. Each works on version after version of one file.
struct Victim {
    const char* name;
    void (*prepare)(int version);  ///< in the parent, before a process starts with that version
    bool (*work)(int version);     ///< in the process; false if it failed, which it must not
    std::vector<const char*>
        tool;  ///< the arguments of the archive tool, which works instead and ends after one version
    bool (*isThere)(int version);  ///< whether the version is what lies in the folder, whole
    bool startsAnew;               ///< each process starts with version 1

    bool IsTool() const { return !tool.empty(); }
};

std::string ContentsOf(int version)
{
    return std::string(size_t(20000 + version % 7 * 1000), char('a' + version % 26)) + std::to_string(version);
}

/// Lines end with '\n' in it.
std::string TextOf(const std::string& path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
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
    return TextOf("configuration") == text;
}

// The settings of a user may remain from an earlier campaign: in the registry of Windows.
void ClearSettings(int version)
{
    if (version == 1) {
        WriteSetting("Killed", "even", "");
        WriteSetting("Killed", "odd", "");
    }
}

bool WriteSettings(int version)
{
    WriteSetting("Killed", version % 2 == 0 ? "even" : "odd", std::to_string(version));
    return true;
}

// A version is one value. On Windows each value is the old or the new one, as the registry changes it in one step;
// elsewhere all values of the section are, since their file is replaced.
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
    const std::string text = TextOf("log.log");
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

void MakeInput(int version)
{
    fs::create_directory("in");
    MakeFile("in/a", ContentsOf(version));
    if (version == 1) {
        MakeFile("archive", ArchiveBytes({}));
    }
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

bool IsExtracted(int version)
{
    return version == 0 ? !fs::exists("out/a") : BytesOf("out/a") == ContentsOf(version);
}

const Victim kVictims[] = {
    {"archive", PrepareNothing, SaveArchive, {}, IsArchive, false},
    {"configuration", PrepareNothing, SaveConfiguration, {}, IsConfiguration, false},
    {"settings", ClearSettings, WriteSettings, {}, AreSettings, false},
    {"log", RemoveLog, WriteLine, {}, HasLines, true},
    {"tool creates", MakeInput, nullptr, {"create", "--force", "--quiet", "archive", "in"}, IsToolsArchive, false},
    {"tool adds", MakeInput, nullptr, {"add", "--replace", "--quiet", "archive", "in"}, IsToolsArchive, false},
    {"tool extracts",
     MakeArchive,
     nullptr,
     {"extract", "--force", "--quiet", "--to", "out", "archive"},
     IsExtracted,
     false},
};

/// Of a process that is not killed; in microseconds.
constexpr int kPatience = 60000000;

class Stopwatch {
public:
    int Microseconds() const
    {
        return int(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - m_Start).count());
    }

private:
    std::chrono::steady_clock::time_point m_Start = std::chrono::steady_clock::now();
};

/// What a worker does. It ends by itself if nobody kills it.
int Work(int kind)
{
    const Stopwatch watch;
    g_Progress->isReady = 1;
    while (watch.Microseconds() < kPatience && kVictims[kind].work(g_Progress->done + 1)) {
        ++g_Progress->done;
    }
    return 1;
}

std::string g_Tool;

Process RunTool(const std::vector<const char*>& arguments)
{
    std::vector<std::string> command = {g_Tool};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return Process::Run(command);
}

// A loop that yields would take processor time from the other process.
void Pause()
{
    std::this_thread::sleep_for(std::chrono::microseconds(10));
}

/// Returns as soon as the tool has been started, or a worker is ready.
Process Start(const Victim& victim)
{
    if (victim.startsAnew) {
        g_Progress->done = 0;
    }
    victim.prepare(g_Progress->done + 1);
    if (victim.IsTool()) {
        return RunTool(victim.tool);
    }
    g_Progress->isReady = 0;
    const Process res = Process::StartWorker(int(&victim - kVictims));
    for (const Stopwatch watch; g_Progress->isReady == 0 && watch.Microseconds() < kPatience;) {
        Pause();
    }
    return res;
}

/// Counts the unfinished files, and makes them look older: Windows leaves files of the last minute alone, which may be
/// about to be renamed.
int AgeUnfinishedFiles()
{
    int count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(".")) {
        if (entry.path().extension() == ".tmp") {
            ++count;
            fs::last_write_time(entry.path(), fs::file_time_type::clock::now() - std::chrono::minutes(2));
        }
    }
    return count;
}

/// Microseconds that a version takes after Start().
int WholeRun(const Victim& victim)
{
    const Process process = Start(victim);
    const Stopwatch watch;
    if (victim.IsTool()) {
        process.Wait();
        ++g_Progress->done;
        return watch.Microseconds();
    }
    for (const int before = g_Progress->done; g_Progress->done == before && watch.Microseconds() < kPatience;) {
        Pause();
    }
    const int res = watch.Microseconds();
    process.Kill();
    process.Wait();
    AgeUnfinishedFiles();
    g_Progress->done += victim.isThere(g_Progress->done + 1);
    return res;
}

/// Microseconds that the tool takes to start and to end.
int EmptyRun()
{
    const Process process = RunTool({"list", "--names", "empty"});
    const Stopwatch watch;
    process.Wait();
    return watch.Microseconds();
}

/// Chooses the moments of kills, in microseconds after Start().
class Moments {
public:
    Moments(const Victim& victim, int runs)
    {
        int empty = kPatience, shortest = kPatience;
        MakeFile("empty", ArchiveBytes({}));
        for (int i = 0; i < runs; ++i) {
            empty = std::min(empty, victim.IsTool() ? EmptyRun() : 0);
            shortest = std::min(shortest, WholeRun(victim));
        }
        m_First = std::min(double(empty) / shortest, 1.0);
        m_Last = shortest * 1.5;
    }

    int Next(Random& random) const
    {
        const int last = int(m_Last) + 1;
        return random.Int(int(last * m_First), last);
    }

    /// How long the tool runs depends on what else the machine does. It aims at one kill in three that comes too late.
    void Learn(bool isLate) { m_Last *= isLate ? 0.96 : 1.02; }

private:
    double m_First;  ///< the share of an empty run in a whole one
    double m_Last;
};

/// What the kills of one kind of process have come to.
struct Tally {
    int kills = 0, late = 0, unfinished = 0;
    const char* wrong = nullptr;
};

/// What is wrong after the end of a process, or null.
const char* WrongAfter(const Victim& victim, int exitCode)
{
    const bool hasEnded = exitCode != Process::kKilled;
    if (hasEnded && (!victim.IsTool() || exitCode != 0)) {
        return "the process has failed";
    }
    g_Progress->done += hasEnded;
    if (victim.isThere(g_Progress->done)) {
        return nullptr;
    }
    if (hasEnded || victim.startsAnew || !victim.isThere(g_Progress->done + 1)) {
        return "neither the old nor the new version";
    }
    ++g_Progress->done;
    return nullptr;
}

void KillOne(const Victim& victim, int microseconds, Tally& res)
{
    const Process process = Start(victim);
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
    process.Kill();
    const int exitCode = process.Wait();
    const int unfinished = AgeUnfinishedFiles();
    ++(exitCode == Process::kKilled ? res.kills : res.late);
    res.unfinished += unfinished;
    res.wrong = WrongAfter(victim, exitCode);
    if (res.wrong == nullptr && unfinished > 1) {
        res.wrong = "unfinished files stay";
    }
}

bool Run(const Victim& victim, int kills)
{
    const TemporaryFolder folder(TemporaryFolder::IN_MEMORY);  // a kill finds a process that waits for a disk too often
    fs::current_path(folder.Path());
    ZmSetEnvironmentVariable("XDG_CONFIG_HOME", folder.Path().c_str());
    g_Progress->done = 0;
    Moments moments(victim, std::min(kills, 20));
    Random random(1);
    Tally tally;
    while (tally.wrong == nullptr && tally.kills < kills) {
        const int late = tally.late;
        KillOne(victim, moments.Next(random), tally);
        if (victim.IsTool()) {
            moments.Learn(tally.late > late);
        }
    }
    printf("%s: %d kills (and %d too late), %d of them left an unfinished file; %s\n", victim.name, tally.kills,
           tally.late, tally.unfinished, tally.wrong != nullptr ? tally.wrong : "nothing wrong");
    fflush(stdout);
    fs::current_path("/");
    return tally.wrong == nullptr;
}

}  // namespace

int main(int argc, char** argv)
{
    SilenceLog();
    PrepareWorkers(argc, argv, Work);
    if (argc < 2) {
        puts("ZmKills <zmarchive> [kills [name]]");
        return 2;
    }
    g_Tool = fs::absolute(argv[1]).string();
    const int kills = argc > 2 ? atoi(argv[2]) : 10000;
    bool right = true;
    for (const Victim& victim : kVictims) {
        if (argc <= 3 || strstr(victim.name, argv[3]) != nullptr) {
            right = Run(victim, kills) && right;
        }
    }
    return right ? 0 : 1;
}
